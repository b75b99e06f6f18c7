#pragma once

#include "KorvaneCore/scan/PathHeuristic.h"
#include "KorvaneCore/scan/ScanItem.h"
#include "KorvaneCore/scanners/DataOwners.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// What belongs to installed applications on disk. Unreadable places are left out. Any thread.
namespace korvane {

/// The rows that say where applications keep data, in the catalogue's order.
[[nodiscard]] std::span<const PathHeuristic* const> applicationDataRows() noexcept;

/// A file or folder that belongs to an application, or alike to several.
struct OwnedData {
    ScanItem item; ///< not yet measured
    std::vector<std::size_t> owners;
};

/// What lies directly in the row's folders and has an owner, in the order of folders and names.
[[nodiscard]] std::vector<OwnedData> ownedData(const PathHeuristic& row, const FileURL& home,
                                               const DataOwners& owners);

/// The application itself as an item, not yet measured: its bundle, its AppImage, or its entry in
/// the user's own menu. Nothing for one that belongs to the system or to a package manager, which
/// would not know that it is gone, and for a link.
[[nodiscard]] std::optional<ScanItem> applicationItem(const InstalledApplication& application,
                                                      const FileURL& home, std::string category);

} // namespace korvane
