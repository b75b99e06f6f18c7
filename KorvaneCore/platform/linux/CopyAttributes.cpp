#include "KorvaneCore/platform/linux/CopyAttributes.h"

#include "KorvaneCore/platform/linux/PairedWalk.h"

#include <array>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace korvane {

namespace {

constexpr mode_t rightsMask = 07777;
constexpr mode_t ownerDependentRights = S_ISUID | S_ISGID;

void copyExtendedAttributes(int from, int to) {
    const ssize_t listed = flistxattr(from, nullptr, 0);
    std::vector<char> names(static_cast<std::size_t>(listed > 0 ? listed : 0));
    const ssize_t length = names.empty() ? 0 : flistxattr(from, names.data(), names.size());
    std::vector<char> value;
    for (ssize_t at = 0; at < length;) {
        const char* name = names.data() + at;
        at += static_cast<ssize_t>(std::strlen(name)) + 1;
        const ssize_t size = fgetxattr(from, name, nullptr, 0);
        if (size < 0) {
            continue;
        }
        value.resize(static_cast<std::size_t>(size));
        const ssize_t read = fgetxattr(from, name, value.data(), value.size());
        if (read >= 0) {
            static_cast<void>(fsetxattr(to, name, value.data(), static_cast<std::size_t>(read), 0));
        }
    }
}

std::array<timespec, 2> timesOf(const struct stat& facts) {
    return {facts.st_atim, facts.st_mtim};
}

} // namespace

void copyAttributes(int from, int to) {
    struct stat facts {};
    if (fstat(from, &facts) != 0) {
        throwErrno("stat");
    }
    mode_t rights = facts.st_mode & rightsMask;
    if (fchown(to, facts.st_uid, facts.st_gid) != 0) {
        rights &= ~ownerDependentRights;
    }
    // The folder it was made in may have handed down an access list of its own.
    static_cast<void>(fremovexattr(to, "system.posix_acl_access"));
    static_cast<void>(fremovexattr(to, "system.posix_acl_default"));
    if (fchmod(to, rights) != 0) {
        throwErrno("set the rights");
    }
    copyExtendedAttributes(from, to);
    static_cast<void>(futimens(to, timesOf(facts).data()));
}

void copyNamedAttributes(int folder, const char* name, const struct stat& facts) {
    mode_t rights = facts.st_mode & rightsMask;
    if (fchownat(folder, name, facts.st_uid, facts.st_gid, AT_SYMLINK_NOFOLLOW) != 0) {
        rights &= ~ownerDependentRights;
    }
    // The name is one that this program made a moment ago in a folder that nobody looks for.
    if (!S_ISLNK(facts.st_mode) && fchmodat(folder, name, rights, 0) != 0) {
        throwErrno("set the rights");
    }
    static_cast<void>(utimensat(folder, name, timesOf(facts).data(), AT_SYMLINK_NOFOLLOW));
}

} // namespace korvane
