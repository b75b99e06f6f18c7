#include "KorvaneCore/cleaning/SafetyGuard.h"

#include "KorvaneCore/cleaning/ItemLocation.h"
#include "KorvaneCore/foundation/ComparisonKeys.h"
#include "KorvaneCore/platform/DirectoryReader.h"
#include "KorvaneCore/platform/PlatformProtectedFolders.h"

#include <algorithm>
#include <array>

#include <fcntl.h>
#include <sys/stat.h>

namespace korvane {

namespace {

constexpr std::array<std::string_view, 17> absoluteFolders = {"/",
                                                              "/System",
                                                              "/System/Library",
                                                              "/Library",
                                                              "/Library/Application Support",
                                                              "/Applications",
                                                              "/usr",
                                                              "/bin",
                                                              "/sbin",
                                                              "/etc",
                                                              "/var",
                                                              "/private",
                                                              "/cores",
                                                              "/opt",
                                                              "/Network",
                                                              "/Users",
                                                              "/Volumes"};

constexpr std::array<std::string_view, 14> homeFolders = {"Library",
                                                          "Documents",
                                                          "Desktop",
                                                          "Downloads",
                                                          "Pictures",
                                                          "Movies",
                                                          "Music",
                                                          "Public",
                                                          "Applications",
                                                          "Library/Mobile Documents",
                                                          "Library/Containers",
                                                          "Library/Application Support",
                                                          "Library/Caches",
                                                          "Library/Preferences"};

constexpr std::array<std::string_view, 9> credentialFolders = {
    ".ssh",    ".aws",    ".gnupg", ".config",        ".kube",
    ".docker", ".gcloud", ".azure", ".password-store"};

bool isFolder(int parent, const DirectoryReader::Entry& entry) {
    if (entry.kind != DirectoryReader::Kind::unknown) {
        return entry.kind == DirectoryReader::Kind::folder;
    }
    struct stat facts {};
    return fstatat(parent, entry.name.data(), &facts, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(facts.st_mode);
}

} // namespace

SafetyGuard::SafetyGuard(const FileURL& homeDirectory)
    : homeDirectory_(homeDirectory.standardized()) {
    const PlatformProtectedFolders platform = platformProtectedFolders();
    const auto protectAll = [&](const auto& paths) {
        for (const std::string_view path : paths) {
            protect(FileURL(std::string(path)));
        }
    };
    const auto protectAllInHome = [&](const auto& paths) {
        for (const std::string_view path : paths) {
            protect(homeDirectory_.appending(path));
        }
    };
    protectAll(absoluteFolders);
    protectAll(platform.absolute);
    // Without a home there is nothing below it either; "" and a name would make a path in the root.
    if (homeDirectory_.isAbsolute()) {
        protect(homeDirectory_);
        protectAllInHome(homeFolders);
        protectAllInHome(credentialFolders);
        protectAllInHome(platform.inHome);
        protectImmediateFolders();
    }
    std::sort(protectedKeys_.begin(), protectedKeys_.end());
    protectedKeys_.erase(std::unique(protectedKeys_.begin(), protectedKeys_.end()),
                         protectedKeys_.end());
}

void SafetyGuard::protect(const FileURL& url) {
    const ItemLocation location(url);
    protectedKeys_.insert(protectedKeys_.end(), location.keys.begin(), location.keys.end());
    if (const auto identity = identityOf(location.standardized)) {
        protectedIdentities_.insert(*identity);
    }
    rememberAncestors(location.standardized);
    if (location.resolved != location.standardized) {
        rememberAncestors(location.resolved);
    }
}

void SafetyGuard::rememberAncestors(const FileURL& url) {
    FileURL folder = url;
    while (folder.path().size() > 1) {
        folder = folder.deletingLastPathComponent();
        if (const auto identity = identityOf(folder)) {
            ancestorIdentities_.insert(*identity);
        }
    }
}

// Every folder directly in the home is protected, hidden ones too. A link is none, and what cannot
// be read is passed over.
void SafetyGuard::protectImmediateFolders() {
    const FileDescriptor home = openFolderFollowingLinks(AT_FDCWD, homeDirectory_.path().c_str());
    if (!home) {
        return;
    }
    DirectoryReader::Buffer buffer = DirectoryReader::makeBuffer();
    DirectoryReader reader(home.get(), buffer);
    while (const auto entry = reader.next()) {
        if (isFolder(home.get(), *entry)) {
            protect(homeDirectory_.appending(entry->name));
        }
    }
}

std::optional<SafetyGuard::Identity> SafetyGuard::identityOf(const FileURL& url) {
    struct stat facts {};
    if (stat(url.path().c_str(), &facts) != 0) {
        return std::nullopt;
    }
    return Identity{facts.st_dev, facts.st_ino};
}

SafetyGuard::Decision SafetyGuard::evaluate(const FileURL& url) const {
    return evaluate(ItemLocation(url));
}

SafetyGuard::Decision SafetyGuard::evaluate(const ItemLocation& location) const {
    // Asked of the path as given: standardising would take the ".." away unseen.
    if (location.given.hasParentTraversal()) {
        return Decision::blocked(BlockReason::pathTraversal);
    }
    const std::string& path = location.standardized.path();
    // The kernel would take a relative path from wherever the program happens to stand, and end a
    // path at a NUL byte: neither is the place that was judged.
    if (!location.standardized.isAbsolute() || path.find('\0') != std::string::npos) {
        return Decision::blocked(BlockReason::emptyPath);
    }
    if (path == "/") {
        return Decision::blocked(BlockReason::filesystemRoot);
    }
    if (const auto reason = judgeKeys(location.keys)) {
        return Decision::blocked(*reason);
    }
    if (const auto reason = judgeIdentity(location)) {
        return Decision::blocked(*reason);
    }
    return Decision::allowed();
}

std::optional<SafetyGuard::BlockReason>
SafetyGuard::judgeKeys(const std::vector<std::string>& keys) const {
    for (const std::string& key : keys) {
        if (std::binary_search(protectedKeys_.begin(), protectedKeys_.end(), key)) {
            return BlockReason::protectedLocation;
        }
    }
    for (const std::string& key : keys) {
        if (key == "/") {
            continue;
        }
        // Strings that begin with a prefix stand side by side in sorted order, the first of them
        // where the prefix itself would stand: looking there finds what a scan of all would find.
        const std::string prefix = enclosingPrefix(key);
        const auto first = std::lower_bound(protectedKeys_.begin(), protectedKeys_.end(), prefix);
        if (first != protectedKeys_.end() && first->starts_with(prefix)) {
            return BlockReason::protectedAncestor;
        }
    }
    return std::nullopt;
}

// Asked only of what the keys would allow, so that it can refuse more and never less: a bind mount,
// or a spelling that a file system takes for the same name, leads to the same folder.
std::optional<SafetyGuard::BlockReason>
SafetyGuard::judgeIdentity(const ItemLocation& location) const {
    const auto identity = identityOf(location.standardized);
    if (!identity) {
        return std::nullopt;
    }
    if (protectedIdentities_.contains(*identity)) {
        return BlockReason::protectedLocation;
    }
    if (ancestorIdentities_.contains(*identity)) {
        return BlockReason::protectedAncestor;
    }
    return std::nullopt;
}

std::string_view rawValue(SafetyGuard::BlockReason reason) noexcept {
    using enum SafetyGuard::BlockReason;
    switch (reason) {
    case filesystemRoot:
        return "the filesystem root";
    case protectedLocation:
        return "a protected system or home location";
    case protectedAncestor:
        return "a folder that contains protected system or home locations";
    case pathTraversal:
        return "a path containing '..' traversal";
    case emptyPath:
        break;
    }
    return "an empty path";
}

std::optional<SafetyGuard::BlockReason> blockReasonFromRawValue(std::string_view text) noexcept {
    using enum SafetyGuard::BlockReason;
    for (const auto reason :
         {filesystemRoot, protectedLocation, protectedAncestor, pathTraversal, emptyPath}) {
        if (text == rawValue(reason)) {
            return reason;
        }
    }
    return std::nullopt;
}

std::string message(SafetyGuard::BlockReason reason) {
    return "refusing to delete " + std::string(rawValue(reason));
}

} // namespace korvane
