#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// Letters, digits and the characters in `kept` as they are, every other byte as "%" and two
/// upper-case hexadecimal digits (RFC 3986). Pure ASCII when `kept` is.
[[nodiscard]] std::string percentCoded(std::string_view bytes, std::string_view kept);

/// The inverse. Nothing for a "%" without two hexadecimal digits behind it.
[[nodiscard]] std::optional<std::string> percentDecoded(std::string_view text);

} // namespace korvane
