#pragma once

#include <compare>
#include <string_view>

namespace korvane {

/// Compares versions number by number between the dots; what is missing counts as 0, so that "2.0"
/// equals "2.0.0". Numbers may have any length. Text behind the numbers ("2.0-beta1") makes a
/// version older than the same numbers alone; two such texts go by their bytes.
[[nodiscard]] std::strong_ordering compareVersions(std::string_view a, std::string_view b);

/// Whether the text is a version that may become part of a file name: a digit first, then letters,
/// digits, dots, hyphens, plus signs and low lines, at most 64.
[[nodiscard]] bool isVersion(std::string_view text) noexcept;

} // namespace korvane
