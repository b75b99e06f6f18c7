#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/scanners/NamedScanner.h"

#include <cstdint>
#include <optional>
#include <string>

namespace korvane {

/// Finds the general caches, logs and build products of the catalogue. Rows that list a folder give
/// one item a child, rows of a name searched for everywhere one item a folder found, every other
/// row one item. Largest first; equal sizes in the order of rows and paths.
class CacheScanner final : public NamedScanner {
  public:
    /// `globMaxDepth`: how many levels below the home folder are still searched for names; absent:
    /// all.
    explicit CacheScanner(FileURL home, std::optional<std::int64_t> globMaxDepth = {},
                          std::string id = "cache-cleaner",
                          std::string displayName = "Cache Cleaner");

    using ModuleScanner::scan;
    [[nodiscard]] const std::optional<std::int64_t>& globMaxDepth() const noexcept {
        return globMaxDepth_;
    }
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

  private:
    FileURL home_;
    std::optional<std::int64_t> globMaxDepth_;
};

} // namespace korvane
