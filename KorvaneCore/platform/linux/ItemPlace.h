#pragma once

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/linux/ItemErrors.h"

#include <string>

namespace korvane {

/// Where an item is, held fast: its parent folder, open, and its name in there. Whatever is swapped
/// on the path afterwards, what is done by this name is done in that folder.
struct ItemPlace {
    FileDescriptor parent;  ///< opened with O_PATH
    std::string parentPath; ///< without links
    std::string name;

    [[nodiscard]] std::string path() const;
};

/// Resolves the links above the item, once, and opens its parent, on whose path no link may lie any
/// more. Refuses (EINVAL) the root, relative paths and paths with "." or ".." as the last name or
/// ".." anywhere. Throws FileError; ENOENT when the parent is not there.
[[nodiscard]] ItemPlace openItemPlace(const FileURL& item, ItemAction action);

} // namespace korvane
