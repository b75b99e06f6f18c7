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

std::string ScanResult::encode(DateForm dates) const {
    // The empty list stands last, so that the items can go into it one after another.
    std::string text = compactJson(Json{{"scannerID", scannerID},
                                        {"startedAt", encodeDate(startedAt, dates)},
                                        {"finishedAt", encodeDate(finishedAt, dates)},
                                        {"items", Json::array()}});
    text.resize(text.size() - 2);
    for (const ScanItem& item : items) {
        if (text.back() != '[') {
            text += ',';
        }
        text += compactJson(item.toJson(dates));
    }
    text += "]}";
    return text;
}

ScanResult ScanResult::decode(std::string_view document) {
    std::vector<ScanItem> items;
    bool inItems = false;
    const Json rest = parseJson(document, [&](int depth, Json::parse_event_t event, Json& value) {
        if (depth == 1 && event == Json::parse_event_t::key) {
            inItems = value == "items";
        }
        if (!inItems || depth != 2 || event != Json::parse_event_t::object_end) {
            return true;
        }
        items.push_back(ScanItem::fromJson(value));
        return false; // taken over, so the tree need not keep it
    });
    ScanResult result = fromJson(rest);
    // What is left in the list was no object, which the line above has refused.
    result.items = std::move(items);
    return result;
}

} // namespace korvane
