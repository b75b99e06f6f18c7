#pragma once

#include "KorvaneCore/scan/ScanItem.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// What one run of a scanner produced.
struct ScanResult {
    std::string scannerID{};
    Date startedAt{};
    Date finishedAt{};
    std::vector<ScanItem> items{}; ///< in the scanner's order

    /// The sum of the items' sizes in bytes; overflow is fatal.
    [[nodiscard]] std::int64_t totalBytes() const;
    [[nodiscard]] std::string formattedTotal() const;
    [[nodiscard]] double duration() const { return finishedAt.since(startedAt); } ///< seconds

    /// Throws DecodingError when the record or one of its items does not decode.
    [[nodiscard]] static ScanResult fromJson(const Json& object);

    /// The record as one line of JSON, and back. Made and read item by item: a large result is
    /// never there a second time as a tree. `decode` throws as `fromJson` does.
    [[nodiscard]] std::string encode(DateForm dates) const;
    [[nodiscard]] static ScanResult decode(std::string_view document);

    friend bool operator==(const ScanResult&, const ScanResult&) = default;
};

} // namespace korvane
