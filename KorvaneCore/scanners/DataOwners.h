#pragma once

#include "KorvaneCore/platform/SoftwareInventory.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// How applications name their files in a place.
enum class DataNaming {
    identifier,       ///< "org.vendor.App", "org.vendor.App.plist", "org.vendor.App.helper"
    identifierOrName, ///< those, or just "App"
    crashReport,      ///< those, or "App_2026-…", "App-2026-…"
};

/// Says which of several applications a file belongs to by its name. Of two that fit, the longer
/// identifier decides, so that nothing of "org.vendor.App.Pro" is taken for "org.vendor.App"'s.
/// Immutable; any thread.
class DataOwners {
  public:
    /// Unless `areAll` installed applications are given, a name that goes on behind an identifier
    /// belongs to nobody: it may be that of an application which is not known.
    DataOwners(const std::vector<InstalledApplication>& applications, bool areAll);

    /// The indexes of the applications that the name fits best; several when it fits them alike.
    /// None for names of the system and of this program.
    [[nodiscard]] std::vector<std::size_t> owners(std::string_view fileName,
                                                  DataNaming naming) const;

  private:
    /// What is compared of one application.
    struct Keys {
        std::string identifier;
        bool hasFamily = false; ///< names below its identifier are its own
        bool isSystems = false; ///< its identifier is one of the system's maker
        std::string name;
        std::string executable;
    };

    /// How much of the key fits; 0 when it does not.
    [[nodiscard]] static std::size_t fit(const Keys& keys, std::string_view key, DataNaming naming);

    std::vector<Keys> keys_;
};

} // namespace korvane
