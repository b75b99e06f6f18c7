#include "Korvane/command/Interrupt.h"

#include <atomic>
#include <csignal>

namespace korvane {

namespace {

std::atomic<Task::Cancellation*> target = nullptr;
std::atomic<bool> interrupted = false;

void handle(int signal) {
    // A second request means now: the default action ends the process.
    if (interrupted.exchange(true)) {
        std::signal(signal, SIG_DFL);
        std::raise(signal);
        return;
    }
    if (Task::Cancellation* cancellation = target.load()) {
        Task::cancel(*cancellation);
    }
}

void install(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    // Without SA_RESTART, so that a question waiting for its answer ends too.
    action.sa_flags = 0;
    sigaction(signal, &action, nullptr);
}

} // namespace

Interrupt::Interrupt() : cancellation_(Task::makeCancellation()), scope_(cancellation_) {
    target = cancellation_.get();
    install(SIGINT, handle);
    install(SIGTERM, handle);
    // A reader that goes away must not kill a cleanup between an item and its record.
    install(SIGPIPE, SIG_IGN);
}

Interrupt::~Interrupt() {
    install(SIGINT, SIG_DFL);
    install(SIGTERM, SIG_DFL);
    target = nullptr;
}

bool Interrupt::happened() noexcept {
    return interrupted;
}

} // namespace korvane
