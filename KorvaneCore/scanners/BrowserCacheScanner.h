#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/scanners/NamedScanner.h"

#include <string>

namespace korvane {

/// Finds the page, compile and GPU caches of eight web browsers, one item a cache folder, in all
/// profiles. Nothing else of a profile is ever proposed or walked. Largest first; equal sizes in
/// the order of browsers, profiles and folders.
class BrowserCacheScanner final : public NamedScanner {
  public:
    explicit BrowserCacheScanner(FileURL home, std::string id = "browser-cache",
                                 std::string displayName = "Browser Cache");

    using ModuleScanner::scan;
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

  private:
    FileURL home_;
};

} // namespace korvane
