#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/scanners/NamedScanner.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace korvane {

/// Lists the largest files below a folder of the user's choice, largest first; equal sizes in the
/// order of a walk. Hidden files and what lies in hidden folders are left out, links not followed.
class LargeFileScanner final : public NamedScanner {
  public:
    /// Files of at least `minimumBytes`, at most `limit` of them.
    LargeFileScanner(FileURL rootURL, std::int64_t minimumBytes, std::size_t limit)
        : NamedScanner("large-files", "Large Files"), rootURL_(std::move(rootURL)),
          minimumBytes_(minimumBytes), limit_(limit) {}

    using ModuleScanner::scan;
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

  private:
    FileURL rootURL_;
    std::int64_t minimumBytes_;
    std::size_t limit_;
};

} // namespace korvane
