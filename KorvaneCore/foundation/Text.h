#pragma once

#include <string>
#include <string_view>

namespace korvane {

[[nodiscard]] bool isValidUTF8(std::string_view text) noexcept;

/// For people: control characters and bytes that are not UTF-8 as "\n", "\t" or "\x1B", invisible
/// and direction-changing format characters as "\u{202E}"; everything else as it is. Always valid
/// UTF-8, never more than one line.
[[nodiscard]] std::string displayText(std::string_view bytes);

/// Unicode canonical composition (NFC), then lower case without a locale. Bytes that are not UTF-8
/// stay as they are, so that different names keep different keys.
[[nodiscard]] std::string composedLowercase(std::string_view text);

/// How many terminal columns the text takes, combining and wide characters considered.
[[nodiscard]] std::size_t displayWidth(std::string_view utf8) noexcept;

} // namespace korvane
