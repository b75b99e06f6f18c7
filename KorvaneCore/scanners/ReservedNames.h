#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Names in the user's Library that are no application's to lose. Any thread.
namespace korvane {

/// The keys under which a folder's name is compared: its lower case, and what is left of it without
/// a team's prefix ("AB12CD34EF.") or "group." in front. At least one.
[[nodiscard]] std::vector<std::string> folderKeys(std::string_view name);

/// Whether a name belongs to the operating system, or cannot tell whose it is.
[[nodiscard]] bool isSystemName(std::string_view name);

/// Whether a name belongs to this program.
[[nodiscard]] bool isOwnName(std::string_view name);

} // namespace korvane
