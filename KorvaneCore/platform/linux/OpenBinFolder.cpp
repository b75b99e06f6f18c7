#include "KorvaneCore/platform/BinFolders.h"
#include "KorvaneCore/platform/DirectoryReader.h"
#include "KorvaneCore/platform/linux/MountTable.h"
#include "KorvaneCore/platform/linux/SafeOpen.h"
#include "KorvaneCore/platform/linux/SafeRemoval.h"
#include "KorvaneCore/platform/linux/TrashInfo.h"

#include <cerrno>
#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane {

namespace {

class LinuxBinFolder final : public OpenBinFolder {
  public:
    LinuxBinFolder(FileDescriptor files, FileDescriptor notes, std::string path)
        : files_(std::move(files)), notes_(std::move(notes)) {
        place_.parent = FileDescriptor(fcntl(files_.get(), F_DUPFD_CLOEXEC, 0));
        place_.parentPath = std::move(path);
    }

    [[nodiscard]] std::optional<std::vector<std::string>> names() const override {
        return namesInFolder(files_.get(), ".");
    }

    void remove(const std::string& name) override {
        place_.name = name;
        removeItem(place_, mounts_);
        if (notes_) {
            unlinkat(notes_.get(), (name + std::string(trashInfoExtension)).c_str(), 0);
        }
    }

    void dropOrphanedNotes() noexcept override;

  private:
    [[nodiscard]] bool isOrphaned(const std::string& note) const;

    FileDescriptor files_;
    FileDescriptor notes_; ///< empty where a Bin keeps none
    ItemPlace place_;
    MountTable mounts_;
};

bool LinuxBinFolder::isOrphaned(const std::string& note) const {
    constexpr std::time_t grace = 60;
    struct stat facts {};
    const std::string name = note.substr(0, note.size() - trashInfoExtension.size());
    return fstatat(files_.get(), name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0 &&
           errno == ENOENT &&
           fstatat(notes_.get(), note.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISREG(facts.st_mode) && facts.st_mtime < std::time(nullptr) - grace;
}

void LinuxBinFolder::dropOrphanedNotes() noexcept {
    if (!notes_) {
        return;
    }
    try {
        for (const std::string& note :
             namesInFolder(notes_.get(), ".").value_or(std::vector<std::string>())) {
            if (note.size() > trashInfoExtension.size() && note.ends_with(trashInfoExtension) &&
                isOrphaned(note)) {
                unlinkat(notes_.get(), note.c_str(), 0);
            }
        }
    } catch (const std::exception&) {
        return; // what is left over costs a few blocks and is dropped the next time
    }
}

} // namespace

std::unique_ptr<OpenBinFolder> OpenBinFolder::open(const FileURL& url) {
    // The folders above are the user's own way to it; the Bin folder itself must be no link.
    const FileURL parent = url.standardized().deletingLastPathComponent().resolvingSymlinks();
    const std::string name(url.standardized().lastPathComponent());
    const FileDescriptor folder = openWithoutLinks(parent.path(), O_PATH);
    if (!folder) {
        return nullptr;
    }
    FileDescriptor files = openFolder(folder.get(), name.c_str());
    if (!files) {
        return nullptr;
    }
    FileDescriptor notes;
    if (name == "files") {
        notes = openSubfolder(folder.get(), "info");
    }
    return std::make_unique<LinuxBinFolder>(std::move(files), std::move(notes),
                                            parent.appending(name).path());
}

} // namespace korvane
