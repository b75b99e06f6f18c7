#include "KorvaneCore/foundation/Task.h"

#include <atomic>
#include <future>
#include <mutex>
#include <set>
#include <stdexcept>

#include <gtest/gtest.h>

namespace korvane {
namespace {

TEST(Task, isCancelledFromOutsideAndNobodyElseIs) {
    std::promise<void> cancelled;
    std::atomic<bool> before = true;
    std::atomic<bool> after = false;
    std::promise<void> started;
    Task task([&] {
        before = Task::isCancelled();
        started.set_value();
        cancelled.get_future().wait();
        after = Task::isCancelled();
    });
    started.get_future().wait();
    task.cancel();
    EXPECT_FALSE(task.isFinished());
    cancelled.set_value();
    task.wait();
    EXPECT_TRUE(task.isFinished());
    EXPECT_FALSE(before);
    EXPECT_TRUE(after);
    EXPECT_FALSE(Task::isCancelled()) << "outside any task";
    EXPECT_EQ(Task::current(), nullptr);
}

TEST(Task, cancellationReachesEverythingStartedInside) {
    const auto outer = Task::makeCancellation();
    const Task::Scope scope(outer);
    std::atomic<int> seen = 0;
    std::promise<void> go;
    const std::shared_future<void> cancelled = go.get_future().share();
    TaskGroup group;
    for (int i = 0; i < 2; ++i) {
        group.addTask([&] {
            cancelled.wait();
            concurrentPerform(10, [&](std::size_t) { seen += Task::isCancelled() ? 1 : 0; });
            Task([&] { seen += Task::isCancelled() ? 1 : 0; }).wait();
        });
    }
    Task::cancel(*outer);
    go.set_value();
    group.waitForAll();
    EXPECT_EQ(seen, 22);
}

TEST(Task, cancellingChildrenLeavesTheParentAlone) {
    const auto outer = Task::makeCancellation();
    const Task::Scope scope(outer);
    std::promise<void> go;
    std::atomic<bool> child = false;
    TaskGroup group;
    group.addTask([&] {
        go.get_future().wait();
        child = Task::isCancelled();
    });
    group.cancelAll();
    go.set_value();
    group.waitForAll();
    EXPECT_TRUE(child);
    EXPECT_FALSE(Task::isCancelled());
    {
        const auto inner = Task::makeCancellation();
        const Task::Scope innerScope(inner);
        Task::cancel(*inner);
        EXPECT_TRUE(Task::isCancelled());
    }
    EXPECT_FALSE(Task::isCancelled());
    EXPECT_EQ(Task::current(), outer);
}

TEST(Task, handsItsExceptionToTheOneWhoWaits) {
    Task task([] { throw std::runtime_error("once"); });
    EXPECT_THROW(task.wait(), std::runtime_error);
    {
        const Task dropped([] { throw std::runtime_error("never asked for"); });
    }

    std::atomic<int> ran = 0;
    TaskGroup group;
    for (const char* message : {"first", "second"}) {
        group.addTask([&ran, message] {
            ++ran;
            throw std::runtime_error(message);
        });
    }
    group.addTask([&] { ++ran; });
    try {
        group.waitForAll();
        ADD_FAILURE() << "the exception was lost";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "first");
    }
    EXPECT_EQ(ran, 3);
}

TEST(ConcurrentPerform, runsEveryIndexOnceOnFewThreads) {
    for (const std::size_t count : {0U, 1U, 2U, 1000U}) {
        std::vector<std::atomic<int>> runs(count);
        std::mutex mutex;
        std::set<std::thread::id> threads;
        concurrentPerform(count, [&](std::size_t index) {
            ++runs[index];
            const std::lock_guard guard(mutex);
            threads.insert(std::this_thread::get_id());
        });
        for (const auto& run : runs) {
            EXPECT_EQ(run, 1);
        }
        EXPECT_LE(threads.size(), concurrencyLimit());
    }
    EXPECT_GE(concurrencyLimit(), 1U);
}

TEST(ConcurrentPerform, nestedCallsStayOnTheirThread) {
    std::atomic<int> runs = 0;
    std::atomic<int> strayed = 0;
    for (int round = 0; round < 2; ++round) { // the second round: the caller is itself again
        concurrentPerform(8, [&](std::size_t) {
            const std::thread::id here = std::this_thread::get_id();
            concurrentPerform(8, [&](std::size_t) {
                ++runs;
                strayed += std::this_thread::get_id() == here ? 0 : 1;
            });
        });
    }
    EXPECT_EQ(runs, 128);
    EXPECT_EQ(strayed, 0);
}

} // namespace
} // namespace korvane
