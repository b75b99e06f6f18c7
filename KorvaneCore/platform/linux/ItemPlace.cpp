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

std::string ItemPlace::path() const {
    return parentPath == "/" ? "/" + name : parentPath + "/" + name;
}

ItemPlace openItemPlace(const FileURL& item, ItemAction action) {
    if (isRefused(item)) {
        throw itemError(action, EINVAL, item.path(), "the path does not name an item in a folder");
    }
    const FileURL parent = item.deletingLastPathComponent();
    ItemPlace place;
    place.name = item.lastPathComponent();
    place.parentPath = parent.standardized().path();
    place.parent = openWithoutLinks(place.parentPath, O_PATH);
    if (!place.parent && errno == ELOOP) {
        place.parentPath = parent.resolvingSymlinks().path();
        place.parent = openWithoutLinks(place.parentPath, O_PATH);
    }
    if (!place.parent) {
        const int error = errno;
        throw itemError(action, error, item.path());
    }
    return place;
}

} // namespace korvane
