#include "KorvaneCore/platform/Volumes.h"

#include "KorvaneCore/foundation/ComparisonKeys.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include <sys/stat.h>
#include <sys/statvfs.h>

#include <mntent.h>

namespace korvane {

namespace {

struct MountedDisk {
    std::string path;
    std::string source;
};

/// Nothing when the figures cannot be read or mean nothing.
std::optional<Volume> measured(const FileURL& top) {
    struct statvfs facts {};
    if (statvfs(top.path().c_str(), &facts) != 0 || facts.f_blocks == 0) {
        return std::nullopt;
    }
    Volume volume{.top = top};
    // Without the reserve for the administrator, so that a disk on which nothing more can be
    // written is full.
    const auto reserve = facts.f_bfree - std::min(facts.f_bfree, facts.f_bavail);
    if (__builtin_mul_overflow(facts.f_bavail, facts.f_frsize, &volume.available) ||
        __builtin_mul_overflow(facts.f_blocks - reserve, facts.f_frsize, &volume.total)) {
        return std::nullopt;
    }
    return volume;
}

bool isDisk(const mntent& mount) {
    constexpr std::array<std::string_view, 3> pooled{"btrfs", "zfs", "bcachefs"};
    constexpr std::array<std::string_view, 4> images{"squashfs", "erofs", "iso9660", "udf"};
    const std::string_view type = mount.mnt_type;
    const bool isDevice = std::string_view(mount.mnt_fsname).starts_with("/dev/");
    return (isDevice || std::find(pooled.begin(), pooled.end(), type) != pooled.end()) &&
           std::find(images.begin(), images.end(), type) == images.end();
}

/// In the order in which they were mounted; only those on a folder.
std::vector<MountedDisk> mountedDisks() {
    std::vector<MountedDisk> disks;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> table(
        setmntent("/proc/self/mounts", "re"), endmntent);
    mntent mount{};
    std::array<char, 16384> buffer{};
    while (table && getmntent_r(table.get(), &mount, buffer.data(),
                                static_cast<int>(buffer.size())) != nullptr) {
        struct stat facts {};
        if (isDisk(mount) && stat(mount.mnt_dir, &facts) == 0 && S_ISDIR(facts.st_mode)) {
            disks.push_back({mount.mnt_dir, mount.mnt_fsname});
        }
    }
    return disks;
}

/// What is mounted deepest around a place; empty when that is no disk.
std::string sourceHolding(const FileURL& place, const std::vector<MountedDisk>& disks) {
    const MountedDisk* best = nullptr;
    for (const MountedDisk& disk : disks) {
        if ((enclosingPrefix(place.path()).starts_with(enclosingPrefix(disk.path))) &&
            (best == nullptr || disk.path.size() >= best->path.size())) {
            best = &disk;
        }
    }
    return best == nullptr ? std::string() : best->source;
}

/// The small volumes that a computer starts from are nobody's to clean.
bool isForStarting(std::string_view path) {
    return path == "/boot" || path.starts_with("/boot/") || path == "/efi";
}

} // namespace

double Volume::usedShare() const {
    return total <= 0 ? 0
                      : std::clamp(1 - static_cast<double>(available) / static_cast<double>(total),
                                   0.0, 1.0);
}

std::vector<Volume> mountedVolumes(const FileURL& home) {
    const std::vector<MountedDisk> disks = mountedDisks();
    const std::string homeSource = sourceHolding(home.resolvingSymlinks(), disks);
    const std::string systemSource = sourceHolding(FileURL("/"), disks);
    std::vector<Volume> volumes;
    std::set<std::string> seen;
    if (auto first = measured(home)) {
        seen.insert(homeSource);
        first->isSystem = homeSource == systemSource;
        first->holdsHome = true;
        if (first->isSystem) {
            first->top = FileURL("/");
        }
        volumes.push_back(std::move(*first));
    }
    // Parts of one pool have device numbers of their own and share their space.
    for (const MountedDisk& disk : disks) {
        if (isForStarting(disk.path) || !seen.insert(disk.source).second) {
            continue;
        }
        if (auto volume = measured(FileURL(disk.path))) {
            volume->isSystem = disk.source == systemSource;
            volumes.push_back(std::move(*volume));
        }
    }
    return volumes;
}

} // namespace korvane
