#pragma once

#include "KorvaneCore/scan/ScanResult.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// A stored result in a few figures.
struct ScanSummary {
    std::string scannerID;
    Date finishedAt{};
    std::int64_t itemCount = 0;
    std::int64_t totalBytes = 0;

    friend bool operator==(const ScanSummary&, const ScanSummary&) = default;
};

/// The last result of every scanner, one JSON file each. Failures to write are ignored: the cache
/// is a convenience. Any thread.
class ScanResultCache {
  public:
    /// `directory` is usually `<Application Support>/Korvane/ScanCache`; made here if it can be.
    explicit ScanResultCache(FileURL directory);

    void save(const ScanResult& result);
    /// The stored result; nothing when there is none or it does not decode.
    [[nodiscard]] std::optional<ScanResult> load(std::string_view scannerID) const;
    /// Whether there is a file for it, which need not decode.
    [[nodiscard]] bool has(std::string_view scannerID) const;
    /// What there is, the newest first. Reads through each file without making its items; a file
    /// that is no result is left out. Ends early in a cancelled task.
    [[nodiscard]] std::vector<ScanSummary> summaries() const;
    void remove(std::string_view scannerID);
    void removeAll();

  private:
    [[nodiscard]] FileURL fileURL(std::string_view scannerID) const;
    [[nodiscard]] std::vector<FileURL> files() const;

    FileURL directory_;
    mutable std::mutex queue_;
};

} // namespace korvane
