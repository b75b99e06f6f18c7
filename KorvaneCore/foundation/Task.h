#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace korvane {

/// A piece of work on a thread of its own that can be cancelled from outside. While it runs it is
/// the "surrounding task" of that thread: code below asks `Task::isCancelled()` without having been
/// handed anything. The destructor waits for the work to end (it does not cancel).
class Task {
  public:
    /// Starts `work` at once. A task started inside another inherits its cancellation. An exception
    /// that leaves `work` is kept and thrown by `wait`.
    explicit Task(std::function<void()> work);
    ~Task();
    Task(Task&&) noexcept;
    Task& operator=(Task&&) = delete;

    /// Asks the work, and every task started inside it, to end early. Any thread; never undone.
    void cancel() noexcept;

    /// Waits for the end of the work and rethrows what it threw. At most once.
    void wait();

    /// True when the work has ended. Any thread.
    [[nodiscard]] bool isFinished() const noexcept;

    /// Whether the surrounding task (or one around it) was cancelled; false outside any task.
    [[nodiscard]] static bool isCancelled() noexcept;

    /// Opaque cancellation state of a task.
    struct Cancellation;

    /// The surrounding task's cancellation, to be carried to another thread; null outside a task.
    [[nodiscard]] static std::shared_ptr<Cancellation> current() noexcept;

    /// Makes a cancellation the surrounding one of this thread for the scope's life. Also the way
    /// for a program without threads of its own to make its main thread cancellable.
    class Scope {
      public:
        explicit Scope(std::shared_ptr<Cancellation> cancellation) noexcept;
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

      private:
        std::shared_ptr<Cancellation> previous_;
    };

    /// A fresh cancellation, child of the surrounding one when there is one.
    [[nodiscard]] static std::shared_ptr<Cancellation> makeCancellation();
    /// Sets a cancellation. Safe in a signal handler.
    static void cancel(Cancellation& cancellation) noexcept;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

/// Children that run at the same time, each on a thread of its own, and inherit the cancellation of
/// the task that made the group. The destructor waits for all of them.
class TaskGroup {
  public:
    TaskGroup() = default;
    ~TaskGroup();
    TaskGroup(const TaskGroup&) = delete;
    TaskGroup& operator=(const TaskGroup&) = delete;

    void addTask(std::function<void()> work);

    /// Waits for every child, then rethrows the first exception in order of addition, if any.
    void waitForAll();

    /// Cancels the children started so far.
    void cancelAll() noexcept;

  private:
    std::vector<Task> tasks_;
};

/// Runs `work(index)` for every index in 0..<count on a bounded number of threads (at most one a
/// processor, the calling thread among them), in no set order, and waits for all. The threads carry
/// the surrounding task's cancellation; `work` must not throw. Nested calls run on the caller
/// alone.
void concurrentPerform(std::size_t count, const std::function<void(std::size_t)>& work);

/// How many threads `concurrentPerform` uses at most, at least 1.
[[nodiscard]] std::size_t concurrencyLimit() noexcept;

} // namespace korvane
