#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

namespace korvane {

/// What the note about a trashed item is called: its name in the Bin and this.
inline constexpr std::string_view trashInfoExtension = ".trashinfo";

/// The name to give an item in the Bin on the `number`th try: its own on the first, then
/// "report 2.pdf". Cut at the boundary of a UTF-8 character so that the name of its note takes at
/// most `longest` bytes.
[[nodiscard]] std::string trashName(std::string_view name, std::uint64_t number,
                                    std::size_t longest);

/// The text of the note, as the freedesktop.org Trash convention has it. `path` is written
/// percent-coded, the moment as local time.
[[nodiscard]] std::string trashInfoText(std::string_view path, std::time_t deletedAt);

} // namespace korvane
