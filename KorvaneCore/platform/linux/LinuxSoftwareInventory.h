#pragma once

#include "KorvaneCore/platform/SoftwareInventory.h"

#include <vector>

namespace korvane {

/// Where applications are found on Linux. Places that are not there hold none.
struct LinuxSoftwareRoots {
    std::vector<FileURL> desktopEntries{}; ///< folders with desktop entries, the user's own first
    std::vector<FileURL> packages{};       ///< folders with one folder a sandboxed application
    std::vector<FileURL> applications{};   ///< folders with bundles and AppImages
    std::vector<FileURL> steam{};          ///< Steam installations

    /// The usual places for a user, and those that the environment names.
    [[nodiscard]] static LinuxSoftwareRoots standard(const FileURL& home);
};

/// Reads desktop entries of all data folders, Flatpak, Snap and Steam, and bundles and AppImages in
/// the folders for applications. Hidden entries count: they are installed as well.
class LinuxSoftwareInventory final : public SoftwareInventory {
  public:
    explicit LinuxSoftwareInventory(LinuxSoftwareRoots roots);

    [[nodiscard]] SoftwareListing read() const override;

  private:
    LinuxSoftwareRoots roots_;
};

} // namespace korvane
