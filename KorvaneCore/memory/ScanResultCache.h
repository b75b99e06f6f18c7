#pragma once

#include "KorvaneCore/scan/ScanResult.h"

#include <mutex>
#include <optional>
#include <string_view>

namespace korvane {

/// The last result of every scanner, one JSON file each. Failures to write are ignored: the cache
/// is a convenience. Any thread.
class ScanResultCache {
  public:
    /// `directory` is usually `<Application Support>/Korvane/ScanCache`; made here if it can be.
    explicit ScanResultCache(FileURL directory);

    void save(const ScanResult& result);
    /// The stored result; nothing when there is none or it does not decode.
    [[nodiscard]] std::optional<ScanResult> load(std::string_view scannerID) const;
    void remove(std::string_view scannerID);
    void removeAll();

  private:
    [[nodiscard]] FileURL fileURL(std::string_view scannerID) const;

    FileURL directory_;
    mutable std::mutex queue_;
};

} // namespace korvane
