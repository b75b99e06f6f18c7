#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <optional>
#include <string>

namespace korvane {

/// An application as a folder: "Korvane.app" with Contents/Info.plist and the programs below
/// Contents.
struct AppBundle {
    FileURL location;
    std::string version; ///< CFBundleShortVersionString; empty when it says none

    /// Reads the folder; nothing when it is none or has no Info.plist that can be read.
    [[nodiscard]] static std::optional<AppBundle> at(const FileURL& location);

    /// The bundle below whose Contents a program lies. Nothing for a program of another place, such
    /// as a build folder or a system folder that a package manager fills.
    [[nodiscard]] static std::optional<AppBundle> holding(const FileURL& executable);
};

} // namespace korvane
