#include "KorvaneCore/platform/linux/ExclusiveRename.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane {

namespace {

/// A folder may take the place of an empty folder only, so one made a moment ago reserves the name
/// and nothing with content can ever be replaced.
int renameFolder(int fromFolder, const char* from, int toFolder, const char* to) noexcept {
    if (mkdirat(toFolder, to, 0700) != 0) {
        return errno;
    }
    if (renameat(fromFolder, from, toFolder, to) == 0) {
        return 0;
    }
    const int error = errno;
    unlinkat(toFolder, to, AT_REMOVEDIR);
    return error;
}

/// A second name for the file, then the first one goes, unless it means another file by now.
int relink(int fromFolder, const char* from, int toFolder, const char* to) noexcept {
    if (linkat(fromFolder, from, toFolder, to, 0) != 0) {
        return errno;
    }
    struct stat linked {};
    struct stat current {};
    if (fstatat(toFolder, to, &linked, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno;
    }
    if (fstatat(fromFolder, from, &current, AT_SYMLINK_NOFOLLOW) != 0 ||
        linked.st_dev != current.st_dev || linked.st_ino != current.st_ino ||
        unlinkat(fromFolder, from, 0) == 0 || errno == ENOENT) {
        return 0;
    }
    const int error = errno;
    unlinkat(toFolder, to, 0);
    return error;
}

} // namespace

int renameExclusively(int fromFolder, const std::string& from, int toFolder,
                      const std::string& to) noexcept {
    if (renameat2(fromFolder, from.c_str(), toFolder, to.c_str(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    const int error = errno;
    if (error != EINVAL && error != ENOSYS) {
        return error;
    }
    struct stat facts {};
    if (fstatat(fromFolder, from.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno;
    }
    return S_ISDIR(facts.st_mode) ? renameFolder(fromFolder, from.c_str(), toFolder, to.c_str())
                                  : relink(fromFolder, from.c_str(), toFolder, to.c_str());
}

} // namespace korvane
