#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/scan/ModuleScanner.h"

#include <string>

namespace korvane {

/// Finds the page, compile and GPU caches of eight web browsers, one item a cache folder, in all
/// profiles. Nothing else of a profile is ever proposed or walked. Largest first; equal sizes in
/// the order of browsers, profiles and folders.
class BrowserCacheScanner final : public ModuleScanner {
  public:
    explicit BrowserCacheScanner(FileURL home, std::string id = "browser-cache",
                                 std::string displayName = "Browser Cache");

    using ModuleScanner::scan;
    [[nodiscard]] const std::string& id() const override { return id_; }
    [[nodiscard]] const std::string& displayName() const override { return displayName_; }
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

  private:
    FileURL home_;
    std::string id_;
    std::string displayName_;
};

} // namespace korvane
