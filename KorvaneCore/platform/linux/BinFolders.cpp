#include "KorvaneCore/platform/BinFolders.h"

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/platform/linux/MountTable.h"

#include <algorithm>
#include <set>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

namespace korvane {

namespace {

class BinFinder {
  public:
    /// Takes a folder of this user's own that is no link.
    void offer(const FileURL& folder) {
        struct stat facts {};
        if (fstatat(AT_FDCWD, folder.path().c_str(), &facts,
                    AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) == 0 &&
            S_ISDIR(facts.st_mode) && facts.st_uid == geteuid() &&
            seen_.insert({facts.st_dev, facts.st_ino}).second) {
            found_.push_back(folder);
        }
    }

    /// Takes the Bins in the top folder of a mounted file system.
    void offerVolume(const FileURL& top) {
        const std::string user = fmt::format("{}", geteuid());
        const FileURL shared = top.appending(".Trash");
        struct stat facts {};
        if (fstatat(AT_FDCWD, shared.path().c_str(), &facts,
                    AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) == 0 &&
            S_ISDIR(facts.st_mode) && (facts.st_mode & S_ISVTX) != 0) {
            offerTrash(shared.appending(user));
        }
        offerTrash(top.appending(".Trash-" + user));
        offer(top.appending(".Trashes").appending(user));
    }

    /// Takes the folder in which a Trash keeps its files.
    void offerTrash(const FileURL& trash) {
        FileFacts facts;
        if (readFacts(AT_FDCWD, trash.path().c_str(), facts) == 0 &&
            facts.kind == DirectoryReader::Kind::folder) {
            offer(trash.appending("files"));
        }
    }

    std::vector<FileURL> take() { return std::move(found_); }

  private:
    std::set<std::pair<dev_t, ino_t>> seen_;
    std::vector<FileURL> found_;
};

/// Where the home Trash keeps its files. The way to it is the user's own: links on it are followed.
FileURL homeBin(const UserFolders& folders) {
    return folders.applicationSupport.appending("Trash").resolvingSymlinks().appending("files");
}

} // namespace

bool isBinFolder(const FileURL& url, const UserFolders& folders) {
    const FileURL place = url.standardized();
    const FileURL parent = place.deletingLastPathComponent();
    if (place == folders.home.standardized().appending(".Trash") ||
        place == folders.applicationSupport.standardized().appending("Trash/files") ||
        place == homeBin(folders)) {
        return true;
    }
    if (parent.lastPathComponent() == ".Trashes") {
        return place.lastPathComponent() == fmt::format("{}", geteuid());
    }
    const std::vector<FileURL> all = binFolders(folders);
    return std::find(all.begin(), all.end(), place) != all.end();
}

bool looksLikeBin(const FileURL& folder) {
    const std::string_view name = folder.lastPathComponent();
    const auto holdsFolder = [&](std::string_view inside) {
        FileFacts facts;
        return readFacts(AT_FDCWD, folder.appending(inside).path().c_str(), facts) == 0 &&
               facts.kind == DirectoryReader::Kind::folder;
    };
    return name == ".Trash" || name == ".Trashes" || name.starts_with(".Trash-") ||
           (name == "Trash" && holdsFolder("files") && holdsFolder("info"));
}

std::vector<FileURL> binFolders(const UserFolders& folders) {
    BinFinder finder;
    finder.offer(homeBin(folders));
    finder.offer(folders.home.appending(".Trash"));
    try {
        const auto table = readFile(FileURL("/proc/self/mountinfo"));
        for (const MountTable::Mount& mount : MountTable::parse(table.value_or(""))) {
            finder.offerVolume(FileURL(mount.path));
        }
    } catch (const FileError&) {
        return finder.take(); // the home folder's own are known all the same
    }
    return finder.take();
}

} // namespace korvane
