#include "Korvane/command/ItemsDocument.h"

#include "KorvaneCore/foundation/Json.h"
#include "KorvaneCore/foundation/Text.h"

#include <fmt/format.h>

namespace korvane {

namespace {

void checkSizes(const ScanResult& result) {
    std::int64_t sum = 0;
    for (const ScanItem& item : result.items) {
        if (item.sizeBytes < 0) {
            throw DecodingError(
                fmt::format("the size of {} is below zero", displayText(item.path())));
        }
        if (__builtin_add_overflow(sum, item.sizeBytes, &sum)) {
            throw DecodingError("the sizes of the items add up to more than any disk holds");
        }
    }
}

std::unordered_set<UUID> readPreselected(const Json& array, const ScanResult& result) {
    std::unordered_set<UUID> known;
    for (const ScanItem& item : result.items) {
        known.insert(item.id);
    }
    if (!array.is_array()) {
        throw DecodingError("\"preselected\" must be a list of item ids");
    }
    std::unordered_set<UUID> preselected;
    for (const Json& value : array) {
        const auto id =
            value.is_string() ? UUID::fromText(value.get_ref<const std::string&>()) : std::nullopt;
        if (!id || !known.contains(*id)) {
            throw DecodingError("\"preselected\" names an id that no item has");
        }
        preselected.insert(*id);
    }
    return preselected;
}

} // namespace

ItemsDocument ItemsDocument::parse(std::string_view text) {
    const Json document = parseJson(text);
    const bool wrapped = document.is_object() && document.contains("result");
    ItemsDocument parsed;
    parsed.result = ScanResult::fromJson(wrapped ? document.at("result") : document);
    checkSizes(parsed.result);
    if (wrapped && document.contains("preselected")) {
        parsed.preselected = readPreselected(document.at("preselected"), parsed.result);
    }
    return parsed;
}

} // namespace korvane
