#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/scanners/NamedScanner.h"

#include <string>
#include <utility>

namespace korvane {

/// Lists every regular file in the download folder and below, by kind, largest first; equal sizes
/// in the order of a walk. Hidden files and folders are left out, and so is what bundles are made
/// of, which is no file to its user.
class DownloadsScanner final : public NamedScanner {
  public:
    explicit DownloadsScanner(FileURL downloads)
        : NamedScanner("downloads", "Downloads"), downloads_(std::move(downloads)) {}

    using ModuleScanner::scan;
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

  private:
    FileURL downloads_;
};

} // namespace korvane
