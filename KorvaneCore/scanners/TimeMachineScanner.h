#pragma once

#include "KorvaneCore/platform/ProcessLauncher.h"
#include "KorvaneCore/scanners/NamedScanner.h"

#include <string>

namespace korvane {

/// Lists the local snapshots that the platform's backup tool keeps, oldest first; nothing where
/// there is no such tool. How much a snapshot holds alone nobody can tell before it is gone: their
/// size is 0.
class TimeMachineScanner final : public NamedScanner {
  public:
    /// `launcher` must outlive the scanner.
    explicit TimeMachineScanner(ProcessLauncher& launcher = ProcessLauncher::standard())
        : NamedScanner("time-machine", "Time Machine"), launcher_(launcher) {}

    using ModuleScanner::scan;
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

  private:
    ProcessLauncher& launcher_;
};

} // namespace korvane
