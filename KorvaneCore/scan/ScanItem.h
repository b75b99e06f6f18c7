#pragma once

#include "KorvaneCore/foundation/Date.h"
#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/foundation/Json.h"
#include "KorvaneCore/foundation/UUID.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace korvane {

/// One candidate file or folder that the user may choose to remove. Equal over all of its fields:
/// two items of one path but different ids are different items.
struct ScanItem {
    UUID id = UUID::random();
    FileURL url{};
    std::int64_t sizeBytes = 0; ///< bytes the item occupies; the whole tree for a folder
    std::optional<Date> lastModified{};
    std::string category{};    ///< groups the results; UTF-8
    std::string heuristicID{}; ///< the catalogue row that justified it
    bool isDirectory = false;

    [[nodiscard]] const std::string& path() const noexcept { return url.path(); }
    [[nodiscard]] std::string formattedSize() const;

    /// A copy under another row, with a fresh id.
    [[nodiscard]] ScanItem withHeuristicID(std::string newHeuristicID) const;

    [[nodiscard]] Json toJson(DateForm dates) const;
    /// Throws DecodingError for a missing key or a value of the wrong type.
    [[nodiscard]] static ScanItem fromJson(const Json& object);

    friend bool operator==(const ScanItem&, const ScanItem&) = default;
};

/// The standardised path of an item's URL: how the scan memory and the Cleaner tell items apart.
[[nodiscard]] std::string itemKey(const ScanItem& item);

} // namespace korvane

template <>
struct std::hash<korvane::ScanItem> {
    std::size_t operator()(const korvane::ScanItem& item) const noexcept;
};
