#pragma once

#include "KorvaneCore/foundation/Date.h"
#include "KorvaneCore/foundation/FileURL.h"

#include <stdexcept>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace korvane {

/// JSON with the keys in the order in which they were put in.
using Json = nlohmann::ordered_json;

/// A document or record that does not have the form it should have; what() says where and why.
class DecodingError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The two ways in which dates are written: ISO 8601 text, or the number of seconds since 1 January
/// 2001 UTC. Reading accepts both.
enum class DateForm { iso8601, secondsSinceReferenceDate };

[[nodiscard]] Json encodeDate(const Date& date, DateForm form);
[[nodiscard]] Date decodeDate(const Json& value, std::string_view key);

/// A path as JSON text: the path itself when it is UTF-8, else its file URL.
[[nodiscard]] std::string pathText(std::string_view path);
/// The inverse of `pathText`.
[[nodiscard]] std::string pathFromText(std::string_view text);

/// Parses a whole document; throws DecodingError with line and column. `filter` is shown every
/// value as it is complete, with its depth, and may keep it out of the tree by answering false.
[[nodiscard]] Json parseJson(std::string_view document,
                             const Json::parser_callback_t& filter = nullptr);

/// A required member of the right type; throws DecodingError naming the key otherwise.
[[nodiscard]] const Json& requireMember(const Json& object, std::string_view key);
[[nodiscard]] std::string requireString(const Json& object, std::string_view key);
[[nodiscard]] std::int64_t requireInteger(const Json& object, std::string_view key);
[[nodiscard]] bool requireBoolean(const Json& object, std::string_view key);

/// One line of JSON in UTF-8, without a line feed. Text that is not UTF-8 is a programming error.
[[nodiscard]] std::string compactJson(const Json& value);

} // namespace korvane
