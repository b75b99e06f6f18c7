#include "KorvaneCore/platform/linux/MakeFolders.h"

#include "KorvaneCore/foundation/FileURL.h"

#include <cerrno>
#include <vector>

#include <sys/stat.h>

namespace korvane {

namespace {

/// 0 when a folder is at the path now, whoever made it.
int makeFolder(const std::string& path, mode_t mode) {
    if (mkdir(path.c_str(), mode) == 0) {
        return 0;
    }
    const int error = errno;
    struct stat facts {};
    if (error != ENOENT && stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode)) {
        return 0;
    }
    return error == EEXIST ? ENOTDIR : error;
}

} // namespace

int makeFolders(const std::string& path, mode_t mode) {
    std::vector<std::string> missing;
    std::string current = path;
    int error = makeFolder(current, mode);
    while (error == ENOENT) {
        missing.push_back(current);
        current = parentPath(current);
        if (current.empty()) {
            return error;
        }
        error = makeFolder(current, mode);
    }
    while (error == 0 && !missing.empty()) {
        error = makeFolder(missing.back(), mode);
        missing.pop_back();
    }
    return error;
}

} // namespace korvane
