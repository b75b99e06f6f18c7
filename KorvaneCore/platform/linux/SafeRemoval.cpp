#include "KorvaneCore/platform/linux/SafeRemoval.h"

#include "KorvaneCore/platform/DirectoryReader.h"
#include "KorvaneCore/platform/linux/FolderStack.h"
#include "KorvaneCore/platform/linux/MountTable.h"
#include "KorvaneCore/platform/linux/SafeOpen.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane {

namespace {

/// The folders of one level that are still to be removed: names, each ended by a NUL, because there
/// may be millions of them. Taken from the end.
class PendingNames {
  public:
    [[nodiscard]] bool isEmpty() const noexcept { return names_.empty(); }

    void add(std::string_view name) {
        names_.append(name);
        names_.push_back('\0');
    }

    std::string take() {
        names_.pop_back();
        const std::size_t end = names_.rfind('\0');
        const std::size_t start = end == std::string::npos ? 0 : end + 1;
        std::string name = names_.substr(start);
        names_.resize(start);
        return name;
    }

  private:
    std::string names_;
};

class TreeRemoval {
  public:
    TreeRemoval(int parent, const std::string& parentPath)
        : parentPath_(parentPath), folders_(parent), buffer_(DirectoryReader::makeBuffer()) {}

    void remove(const std::string& name) {
        levels_.emplace_back().pending.add(name);
        while (true) {
            if (!levels_.back().pending.isEmpty()) {
                enter(levels_.back().pending.take());
            } else if (!folders_.isAtBase()) {
                leave();
            } else {
                return;
            }
        }
    }

  private:
    struct Level {
        PendingNames pending;
        bool removedSomething = false;
    };

    void enter(std::string name) {
        FileDescriptor folder = openSubfolder(folders_.descriptor(), name.c_str());
        if (!folder) {
            removeWhatIsNoFolder(name, errno);
            return;
        }
        if (const int error = folders_.enter(std::move(folder), std::move(name)); error != 0) {
            fail(error);
        }
        levels_.emplace_back();
        removeFiles(levels_.back());
    }

    /// Between its listing and now the folder may have gone or become something else.
    void removeWhatIsNoFolder(const std::string& name, int openError) {
        const bool isReplaced = openError == ENOTDIR || openError == ELOOP;
        if (openError == ENOENT ||
            (isReplaced && (unlinkat(folders_.descriptor(), name.c_str(), 0) == 0))) {
            return;
        }
        fail(isReplaced ? errno : openError, name);
    }

    void removeEntry(Level& level, int folder, const DirectoryReader::Entry& entry) const {
        int error = EISDIR;
        if (entry.kind != DirectoryReader::Kind::folder) {
            error = unlinkat(folder, entry.name.data(), 0) == 0 ? 0 : errno;
        }
        if (error == EISDIR) {
            level.pending.add(entry.name);
        } else if (error == 0) {
            level.removedSomething = true;
        } else if (error != ENOENT) {
            fail(error, entry.name);
        }
    }

    void removeFiles(Level& level) {
        const int folder = folders_.descriptor();
        DirectoryReader reader(folder, buffer_);
        for (auto entry = reader.next(); entry.has_value(); entry = reader.next()) {
            removeEntry(level, folder, *entry);
        }
        if (reader.error() != 0) {
            fail(reader.error());
        }
        level.removedSomething = level.removedSomething || !level.pending.isEmpty();
    }

    void leave() {
        const bool removedSomething = levels_.back().removedSomething;
        std::string name;
        if (const int error = folders_.leave(name); error != 0) {
            fail(error);
        }
        levels_.pop_back();
        if (unlinkat(folders_.descriptor(), name.c_str(), AT_REMOVEDIR) == 0 || errno == ENOENT) {
            return;
        }
        // Some file systems skip names when a folder shrinks while it is read; others put new files
        // in. It is read again for as long as that removes anything.
        if ((errno == ENOTEMPTY || errno == EEXIST) && removedSomething) {
            levels_.back().pending.add(name);
            return;
        }
        fail(errno, name);
    }

    [[noreturn]] void fail(int error, std::string_view name = {}) const {
        std::string path = parentPath_ == "/" ? "" : parentPath_;
        for (const std::string& part : {folders_.relativePath(), std::string(name)}) {
            if (!part.empty()) {
                path += '/';
                path += part;
            }
        }
        if (error == EXDEV) {
            throw itemError(ItemAction::remove, error, path,
                            "another file system is mounted there");
        }
        if (error == ESTALE) {
            throw itemError(ItemAction::remove, error, path,
                            "its folders were moved while it was being removed");
        }
        throw itemError(ItemAction::remove, error, path);
    }

    const std::string& parentPath_;
    FolderStack folders_;
    std::vector<Level> levels_;
    DirectoryReader::Buffer buffer_;
};

} // namespace

void removeItem(int parent, const std::string& parentPath, const std::string& name,
                MountTable& mounts) {
    mounts.refuseMountsWithin(pathInFolder(parentPath, name), ItemAction::remove);
    // What is no folder needs this one call, and of a folder that may not go, nothing inside goes
    // either.
    if (unlinkat(parent, name.c_str(), 0) == 0) {
        return;
    }
    const int error = errno;
    if (error != EISDIR) {
        throw itemError(ItemAction::remove, error, pathInFolder(parentPath, name));
    }
    removeTree(parent, name, parentPath);
}

void removeTree(int parent, const std::string& name, const std::string& parentPath) {
    TreeRemoval(parent, parentPath).remove(name);
}

} // namespace korvane
