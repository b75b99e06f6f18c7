#include "KorvaneCore/scan/ScanItem.h"

#include "KorvaneCore/scan/ByteDisplay.h"

#include <utility>

namespace korvane {

namespace {

UUID decodeID(const Json& object) {
    const std::string text = requireString(object, "id");
    if (const auto id = UUID::fromText(text)) {
        return *id;
    }
    throw DecodingError("\"id\" must be a UUID");
}

FileURL decodeURL(const Json& object) {
    const std::string text = requireString(object, "url");
    if (auto url = FileURL::fromAbsoluteString(text)) {
        return std::move(*url);
    }
    throw DecodingError("\"url\" must be the URL of a local file");
}

std::optional<Date> decodeLastModified(const Json& object) {
    const auto found = object.find("lastModified");
    if (found == object.end() || found->is_null()) {
        return std::nullopt;
    }
    return decodeDate(*found, "lastModified");
}

template <typename T>
void mix(std::size_t& seed, const T& value) {
    seed ^= std::hash<T>{}(value) + 0x9E3779B97F4A7C15U + (seed << 6U) + (seed >> 2U);
}

} // namespace

std::string ScanItem::formattedSize() const {
    return ByteDisplay::format(sizeBytes);
}

ScanItem ScanItem::withHeuristicID(std::string newHeuristicID) const {
    return {.url = url,
            .sizeBytes = sizeBytes,
            .lastModified = lastModified,
            .category = category,
            .heuristicID = std::move(newHeuristicID),
            .isDirectory = isDirectory};
}

Json ScanItem::toJson(DateForm dates) const {
    Json object = {{"id", id.text()}, {"url", url.absoluteString()}, {"sizeBytes", sizeBytes}};
    if (lastModified) {
        object["lastModified"] = encodeDate(*lastModified, dates);
    }
    object["category"] = category;
    object["heuristicID"] = heuristicID;
    object["isDirectory"] = isDirectory;
    return object;
}

ScanItem ScanItem::fromJson(const Json& object) {
    return {.id = decodeID(object),
            .url = decodeURL(object),
            .sizeBytes = requireInteger(object, "sizeBytes"),
            .lastModified = decodeLastModified(object),
            .category = requireString(object, "category"),
            .heuristicID = requireString(object, "heuristicID"),
            .isDirectory = requireBoolean(object, "isDirectory")};
}

std::string itemKey(const ScanItem& item) {
    return item.url.standardized().path();
}

} // namespace korvane

std::size_t std::hash<korvane::ScanItem>::operator()(const korvane::ScanItem& item) const noexcept {
    std::size_t seed = 0;
    korvane::mix(seed, item.id);
    korvane::mix(seed, item.url);
    korvane::mix(seed, item.sizeBytes);
    korvane::mix(seed, item.lastModified ? item.lastModified->secondsSinceReferenceDate() : 0.0);
    korvane::mix(seed, item.category);
    korvane::mix(seed, item.heuristicID);
    korvane::mix(seed, item.isDirectory);
    return seed;
}
