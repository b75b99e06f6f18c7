#pragma once

#include "Korvane/updater/UpdateRelease.h"
#include "KorvaneCore/foundation/FileURL.h"

#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// How far an update is.
struct UpdatePhase {
    enum class Kind {
        available,          ///< `release`
        downloading,        ///< `fraction`
        needsManualInstall, ///< `release`, and where its image is: `location`
        failed,             ///< `message`
        idle,
        checking,
        upToDate,
        verifying,
        installing,
        relaunching, ///< the program is to end now
    };

    Kind kind = Kind::idle;
    std::optional<UpdateRelease> release{};
    double fraction = 0; ///< 0 to 1
    FileURL location{};
    std::string message{}; ///< a sentence for the user; empty where there is nothing to say

    friend bool operator==(const UpdatePhase&, const UpdatePhase&) = default;
};

/// The name of the phase, spelled as the enumerator.
[[nodiscard]] std::string_view phaseName(UpdatePhase::Kind kind) noexcept;

} // namespace korvane
