#pragma once

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/linux/ItemErrors.h"

#include <string>

namespace korvane {

[[nodiscard]] std::string pathInFolder(const std::string& folder, const std::string& name);

/// Where an item is, held fast: its parent folder, open, and its name in there. Whatever is swapped
/// on the path afterwards, what is done by this name is done in that folder.
struct ItemPlace {
    FileDescriptor parent;  ///< opened with O_PATH
    std::string parentPath; ///< without links
    std::string name;

    [[nodiscard]] std::string path() const { return pathInFolder(parentPath, name); }
};

/// Opens the item's parent, on whose path no link may lie (ELOOP): whoever judged the path resolved
/// it, and a link that is there now was put there since. Refuses (EINVAL) the root, relative paths
/// and paths with "." or ".." as the last name or ".." anywhere. Throws FileError; ENOENT when the
/// parent is not there.
[[nodiscard]] ItemPlace openItemPlace(const FileURL& item, ItemAction action);

/// As above after resolving the links above the item, once: for places that nobody judges.
[[nodiscard]] ItemPlace openItemPlaceThroughLinks(const FileURL& item, ItemAction action);

} // namespace korvane
