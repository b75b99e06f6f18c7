#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <string_view>

namespace korvane {

/// Over the error of a change to the list that could not be kept.
inline constexpr std::string_view protectionFailureTitle = "Couldn't update your protected paths";

/// Whether a path that somebody wants protected would protect anything.
enum class ProtectionJudgement {
    possible,
    empty,
    relative, ///< it names a place only together with a working folder
    root,     ///< everything, and with that nothing that could be cleaned
};

/// `path` as typed; it is kept so, and may begin with "~".
[[nodiscard]] ProtectionJudgement judgeProtection(std::string_view path, const FileURL& home);

} // namespace korvane
