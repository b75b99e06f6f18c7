#pragma once

#include "KorvaneCore/foundation/FileURL.h"

namespace korvane {

/// Where the current user's things are. Read from the environment each time it is asked for.
struct UserFolders {
    FileURL home;               ///< `HOME`, else the password database
    FileURL applicationSupport; ///< holds "Korvane/": `XDG_DATA_HOME`, else ~/.local/share
    FileURL configuration;      ///< holds "Korvane/": `XDG_CONFIG_HOME`, else ~/.config
    FileURL temporary;          ///< `TMPDIR`, else /tmp

    [[nodiscard]] static UserFolders current();

    /// "Korvane/" + `component` below `applicationSupport`.
    [[nodiscard]] FileURL support(std::string_view component) const;

    friend bool operator==(const UserFolders&, const UserFolders&) = default;
};

} // namespace korvane
