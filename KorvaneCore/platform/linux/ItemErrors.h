#pragma once

#include "KorvaneCore/foundation/FileError.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace korvane {

/// What was being done to an item when it failed; chooses the words of the sentence.
enum class ItemAction : std::uint8_t { remove, trash, move };

/// "Could not move /x to the Bin: Permission denied".
[[nodiscard]] FileError itemError(ItemAction action, int posixError, const std::string& path);

/// As above with a reason that says more than the error number does.
[[nodiscard]] FileError itemError(ItemAction action, int posixError, const std::string& path,
                                  std::string_view why);

} // namespace korvane
