#include "KorvaneCore/audit/AuditEntryDecoder.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include <simdjson.h>

namespace korvane {

namespace {

namespace json = simdjson::ondemand;

/// Which of the known keys of an object were met.
template <std::size_t count>
class KeySet {
  public:
    explicit KeySet(const std::array<std::string_view, count>& keys) : keys_(keys) {}

    /// The key's place in the list; `count` for an unknown key, nothing for a known one met before.
    std::optional<std::size_t> meet(std::string_view key) {
        const auto found = std::find(keys_.begin(), keys_.end(), key);
        const auto index = static_cast<std::size_t>(found - keys_.begin());
        if (index == count) {
            return count;
        }
        if (has(index)) {
            return std::nullopt;
        }
        seen_ |= 1U << index;
        return index;
    }

    [[nodiscard]] bool has(std::size_t index) const { return ((seen_ >> index) & 1U) != 0; }
    /// Whether all of the first `required` keys were met.
    [[nodiscard]] bool hasFirst(std::size_t required) const {
        const unsigned mask = (1U << required) - 1;
        return (seen_ & mask) == mask;
    }
    void forget(std::size_t index) { seen_ &= ~(1U << index); }

  private:
    const std::array<std::string_view, count>& keys_;
    unsigned seen_ = 0;
};

bool readText(json::value& value, std::string& text) {
    std::string_view view;
    if (value.get_string().get(view) != simdjson::SUCCESS) {
        return false;
    }
    text.assign(view);
    return true;
}

bool readText(json::value& value, std::optional<std::string>& text) {
    return readText(value, text ? *text : text.emplace());
}

bool isNull(json::value& value) {
    bool answer = false;
    return value.is_null().get(answer) == simdjson::SUCCESS && answer;
}

bool readInteger(json::value& value, std::int64_t& number) {
    return value.get_int64().get(number) == simdjson::SUCCESS;
}

bool readDate(json::value& value, Date& date) {
    std::string_view view;
    if (value.get_string().get(view) != simdjson::SUCCESS) {
        return false;
    }
    const auto read = Date::fromISO8601(view);
    date = read.value_or(Date());
    return read.has_value();
}

bool readUUID(json::value& value, UUID& id) {
    std::string_view view;
    if (value.get_string().get(view) != simdjson::SUCCESS) {
        return false;
    }
    const auto read = UUID::fromText(view);
    id = read.value_or(UUID());
    return read.has_value();
}

/// Reads every element with `read` into a list whose elements are used again.
template <typename Element, typename Read>
bool readList(json::value& value, std::vector<Element>& list, Read read) {
    json::array array;
    if (value.get_array().get(array) != simdjson::SUCCESS) {
        return false;
    }
    std::size_t count = 0;
    for (auto result : array) {
        json::value element;
        if (result.get(element) != simdjson::SUCCESS) {
            return false;
        }
        if (count == list.size()) {
            list.emplace_back();
        }
        if (!read(element, list[count++])) {
            return false;
        }
    }
    list.resize(count);
    return true;
}

/// Calls `read(index, value)` for every known key of an object; false as soon as anything fails.
template <std::size_t count, typename Read>
bool readMembers(json::object& object, KeySet<count>& keys, Read read) {
    for (auto result : object) {
        json::field field;
        std::string_view key;
        if (std::move(result).get(field) != simdjson::SUCCESS ||
            field.unescaped_key().get(key) != simdjson::SUCCESS) {
            return false;
        }
        const auto index = keys.meet(key);
        if (!index || (*index < count && !read(*index, field.value()))) {
            return false;
        }
    }
    return true;
}

bool readRestorableItem(json::value& value, RestorableItem& item) {
    static constexpr std::array<std::string_view, 2> names = {"original", "trashed"};
    json::object object;
    KeySet keys(names);
    return value.get_object().get(object) == simdjson::SUCCESS &&
           readMembers(object, keys,
                       [&item](std::size_t index, json::value& member) {
                           return readText(member, index == 0 ? item.original : item.trashed);
                       }) &&
           keys.hasFirst(2);
}

bool readRestart(json::value& value, ChainRestart& restart) {
    static constexpr std::array<std::string_view, 4> names = {
        "reason", "recordedAt", "acknowledgedOperationID", "previousHead"};
    json::object object;
    KeySet keys(names);
    restart = {};
    const auto read = [&restart](std::size_t index, json::value& member) {
        switch (index) {
        case 0:
            return readText(member, restart.reason);
        case 1:
            return readDate(member, restart.recordedAt);
        case 2:
            return readUUID(member, restart.acknowledgedOperationID);
        default:
            return isNull(member) || readText(member, restart.previousHead);
        }
    };
    return value.get_object().get(object) == simdjson::SUCCESS && readMembers(object, keys, read) &&
           keys.hasFirst(3);
}

enum Key : std::size_t {
    timestampKey,
    operationIDKey,
    scannerIDKey,
    itemCountKey,
    succeededCountKey,
    failedCountKey,
    bytesReclaimedKey,
    pathsKey,
    restorableKey,
    prevHashKey,
    entryHashKey,
    chainRestartKey,
    keyCount
};

constexpr std::array<std::string_view, keyCount> keyNames = {
    "timestamp",      "operationID", "scannerID",  "itemCount", "succeededCount", "failedCount",
    "bytesReclaimed", "paths",       "restorable", "prevHash",  "entryHash",      "chainRestart"};

bool readRequired(std::size_t key, json::value& value, AuditEntry& entry) {
    switch (key) {
    case timestampKey:
        return readDate(value, entry.timestamp);
    case operationIDKey:
        return readUUID(value, entry.operationID);
    case scannerIDKey:
        return readText(value, entry.scannerID);
    case itemCountKey:
        return readInteger(value, entry.itemCount);
    case succeededCountKey:
        return readInteger(value, entry.succeededCount);
    case failedCountKey:
        return readInteger(value, entry.failedCount);
    case bytesReclaimedKey:
        return readInteger(value, entry.bytesReclaimed);
    default:
        return readList(value, entry.paths, [](json::value& element, std::string& path) {
            return readText(element, path);
        });
    }
}

bool readOptional(std::size_t key, json::value& value, AuditEntry& entry) {
    switch (key) {
    case restorableKey:
        return readList(value, entry.restorable ? *entry.restorable : entry.restorable.emplace(),
                        readRestorableItem);
    case prevHashKey:
        return readText(value, entry.prevHash);
    case entryHashKey:
        return readText(value, entry.entryHash);
    default:
        return readRestart(value, entry.chainRestart.emplace());
    }
}

/// Drops what an earlier line left in members that this line does not have.
void dropAbsent(const KeySet<keyCount>& present, AuditEntry& entry) {
    if (!present.has(restorableKey)) {
        entry.restorable.reset();
    }
    if (!present.has(prevHashKey)) {
        entry.prevHash.reset();
    }
    if (!present.has(entryHashKey)) {
        entry.entryHash.reset();
    }
    if (!present.has(chainRestartKey)) {
        entry.chainRestart.reset();
    }
}

bool readEntry(json::document& document, AuditEntry& entry) {
    json::object object;
    KeySet keys(keyNames);
    unsigned nullKeys = 0;
    const auto read = [&](std::size_t key, json::value& value) {
        if (key < restorableKey) {
            return readRequired(key, value, entry);
        }
        if (isNull(value)) {
            nullKeys |= 1U << key;
            return true;
        }
        return readOptional(key, value, entry);
    };
    if (document.get_object().get(object) != simdjson::SUCCESS ||
        !readMembers(object, keys, read) || !keys.hasFirst(restorableKey) ||
        document.current_location().error() != simdjson::OUT_OF_BOUNDS) {
        return false;
    }
    for (std::size_t key = restorableKey; key < keyCount; ++key) {
        if (((nullKeys >> key) & 1U) != 0) {
            keys.forget(key);
        }
    }
    dropAbsent(keys, entry);
    return true;
}

} // namespace

struct AuditEntryDecoder::State {
    json::parser parser;
    std::vector<char> padded;
};

AuditEntryDecoder::AuditEntryDecoder() : state_(std::make_unique<State>()) {}
AuditEntryDecoder::~AuditEntryDecoder() = default;

bool AuditEntryDecoder::decode(std::string_view line, AuditEntry& entry) {
    // The parser reads past the end of its input, so the line needs room of its own behind it.
    std::vector<char>& padded = state_->padded;
    if (padded.size() < line.size() + simdjson::SIMDJSON_PADDING) {
        padded.resize(std::max(padded.size() * 2, line.size() + simdjson::SIMDJSON_PADDING));
    }
    std::memcpy(padded.data(), line.data(), line.size());
    json::document document;
    return state_->parser.iterate(padded.data(), line.size(), padded.size()).get(document) ==
               simdjson::SUCCESS &&
           readEntry(document, entry);
}

} // namespace korvane
