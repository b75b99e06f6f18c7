#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace korvane {

/// The two streams that people and scripts read. Results go to stdout, everything else to stderr.
namespace Terminal {

[[nodiscard]] bool isTerminal(std::FILE* stream) noexcept;
/// Columns of the terminal behind the stream; 80 where there is none.
[[nodiscard]] std::size_t width(std::FILE* stream) noexcept;
/// Whether colours may be used: on a terminal, and never with NO_COLOR set.
[[nodiscard]] bool usesColour(std::FILE* stream) noexcept;

void print(std::string_view text);     ///< to stdout, as it is
void printLine(std::string_view text); ///< to stdout, with a line feed
void note(std::string_view sentence);  ///< to stderr, "korvane: " before it

/// False when something printed to stdout did not arrive (a full disk, a closed pipe).
[[nodiscard]] bool flushOutput();

enum class Style { plain, bold, dim, red, green, yellow };
/// The text in a style where stdout shows colours, else as it is.
[[nodiscard]] std::string styled(std::string_view text, Style style);

/// Padded with blanks to `columns`, by display width.
[[nodiscard]] std::string padRight(std::string_view text, std::size_t columns);
[[nodiscard]] std::string padLeft(std::string_view text, std::size_t columns);

/// Broken at blanks into lines of at most `columns`, each behind `indent` blanks.
[[nodiscard]] std::string wrapped(std::string_view text, std::size_t indent, std::size_t columns);

/// "1 item", "3 items".
[[nodiscard]] std::string counted(std::size_t count, std::string_view noun);

} // namespace Terminal

} // namespace korvane
