#include "KorvaneCore/scan/ScanResult.h"

#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/scan/ByteDisplay.h"

namespace korvane {

std::int64_t ScanResult::totalBytes() const {
    std::int64_t total = 0;
    for (const ScanItem& item : items) {
        total = checkedAdd(total, item.sizeBytes);
    }
    return total;
}

std::string ScanResult::formattedTotal() const {
    return ByteDisplay::format(totalBytes());
}

Json ScanResult::toJson(DateForm dates) const {
    Json encodedItems = Json::array();
    for (const ScanItem& item : items) {
        encodedItems.push_back(item.toJson(dates));
    }
    return {{"scannerID", scannerID},
            {"startedAt", encodeDate(startedAt, dates)},
            {"finishedAt", encodeDate(finishedAt, dates)},
            {"items", std::move(encodedItems)}};
}

ScanResult ScanResult::fromJson(const Json& object) {
    ScanResult result{.scannerID = requireString(object, "scannerID"),
                      .startedAt = decodeDate(requireMember(object, "startedAt"), "startedAt"),
                      .finishedAt = decodeDate(requireMember(object, "finishedAt"), "finishedAt")};
    const Json& encodedItems = requireMember(object, "items");
    if (!encodedItems.is_array()) {
        throw DecodingError("\"items\" must be a list");
    }
    result.items.reserve(encodedItems.size());
    for (const Json& encoded : encodedItems) {
        result.items.push_back(ScanItem::fromJson(encoded));
    }
    return result;
}

} // namespace korvane
