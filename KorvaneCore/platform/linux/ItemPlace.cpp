#include "KorvaneCore/platform/linux/ItemPlace.h"

#include "KorvaneCore/platform/linux/SafeOpen.h"

#include <cerrno>

#include <fcntl.h>

namespace korvane {

namespace {

bool isRefused(const FileURL& item) {
    const std::string_view name = item.lastPathComponent();
    return !item.isAbsolute() || name == "/" || name == "." || name.empty() ||
           item.hasParentTraversal() || item.path().find('\0') != std::string::npos;
}

} // namespace

std::string pathInFolder(const std::string& folder, const std::string& name) {
    return folder == "/" ? "/" + name : folder + "/" + name;
}

ItemPlace openItemPlace(const FileURL& item, ItemAction action) {
    if (isRefused(item)) {
        throw itemError(action, EINVAL, item.path(), "the path does not name an item in a folder");
    }
    ItemPlace place;
    place.name = item.lastPathComponent();
    place.parentPath = item.deletingLastPathComponent().standardized().path();
    place.parent = openWithoutLinks(place.parentPath, O_PATH);
    if (!place.parent) {
        const int error = errno;
        throw error == ELOOP ? itemError(action, error, item.path(), "a link lies on the way to it")
                             : itemError(action, error, item.path());
    }
    return place;
}

ItemPlace openItemPlaceThroughLinks(const FileURL& item, ItemAction action) {
    if (isRefused(item)) {
        return openItemPlace(item, action); // which says so
    }
    const FileURL parent = item.deletingLastPathComponent().resolvingSymlinks();
    return openItemPlace(parent.appending(item.lastPathComponent()), action);
}

} // namespace korvane
