#pragma once

#include "KorvaneCore/platform/linux/ItemPlace.h"

namespace korvane {

class MountTable;

/// Removes an item of the folder `parent` (open, its path without links) for good, whatever it is,
/// and everything in it. Entries go by name relative to open folders, links are removed themselves,
/// no mount is ever entered, and one inside fails the item before anything of it is removed. Stops
/// at the first entry that will not go and throws FileError naming it; entries that vanish
/// meanwhile count as removed. Any thread.
void removeItem(int parent, const std::string& parentPath, const std::string& name,
                MountTable& mounts);

inline void removeItem(const ItemPlace& place, MountTable& mounts) {
    removeItem(place.parent.get(), place.parentPath, place.name, mounts);
}

/// As above without asking the mount table, for trees that this program has just made.
void removeTree(int parent, const std::string& name, const std::string& parentPath);

} // namespace korvane
