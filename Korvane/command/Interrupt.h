#pragma once

#include "KorvaneCore/foundation/Task.h"

#include <memory>

namespace korvane {

/// Turns Ctrl-C (and a polite request to end) into a cancellation of the surrounding task of the
/// main thread, for its life. One object a process.
class Interrupt {
  public:
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    /// Whether it was asked to end.
    [[nodiscard]] static bool happened() noexcept;

  private:
    std::shared_ptr<Task::Cancellation> cancellation_;
    Task::Scope scope_;
};

} // namespace korvane
