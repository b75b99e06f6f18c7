#include "KorvaneCore/foundation/Task.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <system_error>
#include <utility>

namespace korvane {

struct Task::Cancellation {
    std::atomic<bool> cancelled = false;
    std::shared_ptr<Cancellation> surrounding;
};

struct Task::State {
    std::shared_ptr<Cancellation> cancellation;
    std::exception_ptr failure;
    std::atomic<bool> finished = false;
    std::thread thread;
};

namespace {

thread_local std::shared_ptr<Task::Cancellation> currentCancellation;
thread_local bool isPoolThread = false;

} // namespace

Task::Task(std::function<void()> work) : state_(std::make_unique<State>()) {
    state_->cancellation = makeCancellation();
    state_->thread = std::thread([state = state_.get(), work = std::move(work)] {
        const Scope scope(state->cancellation);
        try {
            work();
        } catch (...) {
            state->failure = std::current_exception();
        }
        state->finished.store(true, std::memory_order_release);
    });
}

Task::Task(Task&&) noexcept = default;

Task::~Task() {
    if (state_ && state_->thread.joinable()) {
        state_->thread.join();
    }
}

void Task::cancel() noexcept {
    cancel(*state_->cancellation);
}

void Task::cancel(Cancellation& cancellation) noexcept {
    cancellation.cancelled.store(true, std::memory_order_relaxed);
}

void Task::wait() {
    if (state_->thread.joinable()) {
        state_->thread.join();
    }
    if (auto failure = std::exchange(state_->failure, nullptr)) {
        std::rethrow_exception(failure);
    }
}

bool Task::isFinished() const noexcept {
    return state_->finished.load(std::memory_order_acquire);
}

bool Task::isCancelled() noexcept {
    for (const Cancellation* one = currentCancellation.get(); one != nullptr;
         one = one->surrounding.get()) {
        if (one->cancelled.load(std::memory_order_relaxed)) {
            return true;
        }
    }
    return false;
}

std::shared_ptr<Task::Cancellation> Task::current() noexcept {
    return currentCancellation;
}

std::shared_ptr<Task::Cancellation> Task::makeCancellation() {
    auto cancellation = std::make_shared<Cancellation>();
    cancellation->surrounding = currentCancellation;
    return cancellation;
}

Task::Scope::Scope(std::shared_ptr<Cancellation> cancellation) noexcept
    : previous_(std::exchange(currentCancellation, std::move(cancellation))) {}

Task::Scope::~Scope() {
    currentCancellation = std::move(previous_);
}

TaskGroup::~TaskGroup() = default;

void TaskGroup::addTask(std::function<void()> work) {
    tasks_.emplace_back(std::move(work));
}

void TaskGroup::waitForAll() {
    std::exception_ptr first;
    for (Task& task : tasks_) {
        try {
            task.wait();
        } catch (...) {
            first = first ? first : std::current_exception();
        }
    }
    tasks_.clear();
    if (first) {
        std::rethrow_exception(first);
    }
}

void TaskGroup::cancelAll() noexcept {
    for (Task& task : tasks_) {
        task.cancel();
    }
}

std::size_t concurrencyLimit() noexcept {
    return std::max(1U, std::thread::hardware_concurrency());
}

void concurrentPerform(std::size_t count, const std::function<void(std::size_t)>& work) {
    const std::size_t width = isPoolThread ? 1 : std::min(count, concurrencyLimit());
    std::atomic<std::size_t> next = 0;
    const auto drain = [&] {
        const bool nested = std::exchange(isPoolThread, true);
        for (std::size_t index = next++; index < count; index = next++) {
            work(index);
        }
        isPoolThread = nested;
    };
    TaskGroup helpers;
    try {
        for (std::size_t i = 1; i < width; ++i) {
            helpers.addTask(drain);
        }
    } catch (const std::system_error&) {
        // Out of threads: those that there are, this one at least, do all of the work.
    }
    drain();
    helpers.waitForAll();
}

} // namespace korvane
