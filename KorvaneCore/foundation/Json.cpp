#include "KorvaneCore/foundation/Json.h"

#include "KorvaneCore/foundation/Text.h"

#include <algorithm>
#include <limits>

#include <fmt/format.h>

namespace korvane {

namespace {

[[noreturn]] void fail(std::string_view key, std::string_view expected) {
    throw DecodingError(fmt::format("\"{}\" must be {}", displayText(key), expected));
}

} // namespace

Json encodeDate(const Date& date, DateForm form) {
    return form == DateForm::iso8601 ? Json(date.iso8601())
                                     : Json(date.secondsSinceReferenceDate());
}

Date decodeDate(const Json& value, std::string_view key) {
    if (value.is_number()) {
        return Date(value.get<double>());
    }
    if (value.is_string()) {
        if (const auto date = Date::fromISO8601(value.get_ref<const std::string&>())) {
            return *date;
        }
    }
    fail(key, "a date");
}

std::string pathText(std::string_view path) {
    return isValidUTF8(path) ? std::string(path) : FileURL(std::string(path)).absoluteString();
}

std::string pathFromText(std::string_view text) {
    const auto url = FileURL::fromAbsoluteString(text);
    return url ? url->path() : std::string(text);
}

Json parseJson(std::string_view document, const Json::parser_callback_t& filter) {
    try {
        return Json::parse(document, filter);
    } catch (const Json::parse_error& error) {
        const std::string_view before = document.substr(0, error.byte == 0 ? 0 : error.byte - 1);
        const auto line = 1 + std::count(before.begin(), before.end(), '\n');
        const std::size_t lineStart = before.rfind('\n');
        const std::size_t column =
            before.size() - (lineStart == std::string_view::npos ? 0 : lineStart + 1) + 1;
        throw DecodingError(fmt::format("not valid JSON at line {}, column {}", line, column));
    } catch (const Json::out_of_range&) {
        throw DecodingError("not valid JSON: a number is too large");
    }
}

const Json& requireMember(const Json& object, std::string_view key) {
    if (!object.is_object()) {
        throw DecodingError(fmt::format("an object with \"{}\" was expected", displayText(key)));
    }
    const auto found = object.find(std::string(key));
    if (found == object.end()) {
        throw DecodingError(fmt::format("\"{}\" is missing", displayText(key)));
    }
    return *found;
}

std::string requireString(const Json& object, std::string_view key) {
    const Json& value = requireMember(object, key);
    if (!value.is_string()) {
        fail(key, "text");
    }
    return value.get<std::string>();
}

std::int64_t requireInteger(const Json& object, std::string_view key) {
    const Json& value = requireMember(object, key);
    if (!value.is_number_integer() ||
        (value.is_number_unsigned() &&
         value.get<std::uint64_t>() >
             static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))) {
        fail(key, "a whole number");
    }
    return value.get<std::int64_t>();
}

bool requireBoolean(const Json& object, std::string_view key) {
    const Json& value = requireMember(object, key);
    if (!value.is_boolean()) {
        fail(key, "true or false");
    }
    return value.get<bool>();
}

std::string compactJson(const Json& value) {
    return value.dump();
}

} // namespace korvane
