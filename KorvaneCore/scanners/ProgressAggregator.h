#pragma once

#include "KorvaneCore/scan/ModuleScanner.h"

#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// Makes one progress out of those of scanners that run at the same time. Any thread; `downstream`
/// is called unlocked, by whichever thread reported.
class ProgressAggregator {
  public:
    /// `downstream` must outlive the aggregator.
    ProgressAggregator(std::size_t count, const ScanProgressHandler& downstream)
        : downstream_(downstream), perChildFraction_(count), lastMessages_(count) {}

    /// Takes a child's report. Ignored when there is no such child.
    void update(std::ptrdiff_t child, std::string_view displayName, std::string_view message,
                std::optional<double> fraction);

  private:
    const ScanProgressHandler& downstream_;
    std::mutex lock_;
    std::vector<double> perChildFraction_;
    std::vector<std::string> lastMessages_;
};

} // namespace korvane
