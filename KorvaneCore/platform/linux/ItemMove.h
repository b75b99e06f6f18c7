#pragma once

#include "KorvaneCore/foundation/FileURL.h"

namespace korvane {

class MountTable;

/// Moves an item to a name that nothing has. By a rename; across file systems by a copy under a
/// hidden name beside the destination, which is synced and compared with the source before it gets
/// its name and the source goes. Throws FileError; then the source is whole and no copy is left.
void moveItemExclusively(const FileURL& source, const FileURL& destination, MountTable& mounts);

/// Removes the Trash's note about an item that was `<trash>/files/NAME`. Does nothing for any other
/// path, or while the item is still there.
void dropTrashNote(const FileURL& trashed) noexcept;

} // namespace korvane
