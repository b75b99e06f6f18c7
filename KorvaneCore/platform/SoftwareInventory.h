#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <memory>
#include <string>
#include <vector>

namespace korvane {

/// One application that is installed on this computer. Texts are bytes as found.
struct InstalledApplication {
    enum class Kind {
        bundle,       ///< a folder that is the application, "Name.app"
        appImage,     ///< a file that is the application
        desktopEntry, ///< a description of an application whose files are elsewhere
        managed,      ///< belongs to a package manager or a game store, which also removes it
    };

    Kind kind = Kind::managed;
    std::string identifier{}; ///< "org.vendor.App"; empty when it has none
    std::string name{};       ///< as people know it
    FileURL location{};
    std::string executable{}; ///< the name of a bundle's program, under which crashes are reported
    std::vector<std::string> aliases{}; ///< further identifiers and names that it may go by

    friend bool operator==(const InstalledApplication&, const InstalledApplication&) = default;
};

/// What an inventory found. Incomplete when a place that may hold applications could not be read:
/// then nothing may be concluded from an application's absence.
struct SoftwareListing {
    std::vector<InstalledApplication> applications{};
    bool isComplete = true;
};

/// Knows which applications are installed. Never throws. Any thread.
class SoftwareInventory {
  public:
    virtual ~SoftwareInventory() = default;

    /// Reads afresh; the same order each time. Incomplete when the surrounding task is cancelled.
    [[nodiscard]] virtual SoftwareListing read() const = 0;

    [[nodiscard]] std::vector<InstalledApplication> applications() const {
        return read().applications;
    }

    /// That of this operating system for a user.
    [[nodiscard]] static std::shared_ptr<const SoftwareInventory> standard(const FileURL& home);

  protected:
    SoftwareInventory() = default;
    SoftwareInventory(const SoftwareInventory&) = default;
    SoftwareInventory& operator=(const SoftwareInventory&) = default;
};

} // namespace korvane
