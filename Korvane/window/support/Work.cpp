#include "Korvane/window/support/Work.h"

#include <QPointer>
#include <atomic>
#include <chrono>

namespace korvane {

Work::~Work() {
    ++run_;
    cancel();
    task_.reset(); // waits
}

void Work::setRunning(bool running) {
    if (running != isRunning_) {
        isRunning_ = running;
        emit runningChanged();
    }
}

void Work::start(std::function<Step(const Post& post)> work) {
    cancel();
    const quint64 run = ++run_;
    setRunning(true);
    // This object outlives the task: the destructor waits for it. Queued calls that are still
    // waiting when the object goes are dropped by the event loop.
    const Post post = [this, run](Step step) {
        QMetaObject::invokeMethod(
            this,
            [this, run, step = std::move(step)] {
                if (run == run_) {
                    step();
                }
            },
            Qt::QueuedConnection);
    };
    // Nobody else holds the previous one, or letting go of it would not wait.
    task_ = std::make_unique<Task>([this, previous = std::shared_ptr<Task>(std::move(task_)),
                                    work = std::move(work), post]() mutable {
        previous.reset(); // waits here and not in the interface
        Step last = work(post);
        post([this, last = std::move(last)] {
            setRunning(false);
            if (last) {
                last();
            }
        });
    });
}

void Work::cancel() {
    if (task_) {
        task_->cancel();
    }
}

struct ProgressThrottle::State {
    using Clock = std::chrono::steady_clock;
    std::atomic<Clock::rep> next = 0;
};

ProgressThrottle::ProgressThrottle() : state_(std::make_shared<State>()) {}

bool ProgressThrottle::isDue() {
    using Clock = State::Clock;
    constexpr Clock::rep interval =
        std::chrono::duration_cast<Clock::duration>(std::chrono::milliseconds(25)).count();
    const Clock::rep now = Clock::now().time_since_epoch().count();
    Clock::rep next = state_->next.load(std::memory_order_relaxed);
    return now >= next &&
           state_->next.compare_exchange_strong(next, now + interval, std::memory_order_relaxed);
}

} // namespace korvane
