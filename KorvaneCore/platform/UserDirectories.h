#pragma once

#include "KorvaneCore/platform/UserFolders.h"

namespace korvane {

/// The folders in the home folder in which people keep things, wherever they were moved to. Always
/// set; on Linux what the user-dirs configuration says, where it names a place inside the home
/// folder, else the usual name.
struct UserDirectories {
    FileURL desktop;
    FileURL downloads;
    FileURL pictures;
    FileURL videos;

    /// Reads the configuration afresh. Any thread.
    [[nodiscard]] static UserDirectories read(const UserFolders& folders);

    friend bool operator==(const UserDirectories&, const UserDirectories&) = default;
};

} // namespace korvane
