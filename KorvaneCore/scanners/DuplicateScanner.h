#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/scanners/NamedScanner.h"

#include <cstdint>
#include <string>

namespace korvane {

/// Finds files of identical content below one folder, by the SHA-256 digest of all of their bytes
/// and by nothing else. Every member of a group is an item; its category is the group's digest in
/// lower-case hexadecimal. Within a group the newest comes first, undated ones last, equal dates in
/// the order of the walk; groups come in the order in which their first members were met. Files
/// that are not the same from the walk to their last byte are left out. Walks and hashes on the
/// calling thread, one file at a time, while a second one reads the files that come next.
/// Cancelled, it returns the groups among the files it had hashed.
class DuplicateScanner final : public NamedScanner {
  public:
    /// `minimumBytes`: smaller files are ignored.
    DuplicateScanner(FileURL rootURL, std::int64_t minimumBytes);

    using ModuleScanner::scan;
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

    [[nodiscard]] const FileURL& rootURL() const noexcept { return rootURL_; }
    [[nodiscard]] std::int64_t minimumBytes() const noexcept { return minimumBytes_; }

  private:
    FileURL rootURL_;
    std::int64_t minimumBytes_;
};

} // namespace korvane
