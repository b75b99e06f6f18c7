#include "KorvaneCore/platform/BinFolders.h"
#include "KorvaneCore/platform/DirectoryReader.h"
#include "KorvaneCore/platform/linux/MountTable.h"
#include "KorvaneCore/platform/linux/SafeOpen.h"
#include "KorvaneCore/platform/linux/SafeRemoval.h"
#include "KorvaneCore/platform/linux/TrashInfo.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <iterator>
#include <mutex>
#include <unordered_set>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane {

namespace {

class LinuxBinFolder final : public OpenBinFolder {
  public:
    LinuxBinFolder(FileDescriptor files, FileDescriptor notes, std::string path)
        : files_(std::move(files)), notes_(std::move(notes)), path_(std::move(path)) {}

    [[nodiscard]] std::optional<std::vector<std::string>> names() const override;

    void remove(const std::string& name) override;

    void dropOrphanedNotes() noexcept override;

  private:
    [[nodiscard]] bool isOrphaned(const std::string& note) const;

    FileDescriptor files_;
    FileDescriptor notes_; ///< empty where a Bin keeps none
    std::string path_;
    std::once_flag notesListed_;
    std::unordered_set<std::string> noteNames_;
    MountTable mounts_;
};

// In the order of their inodes: a disk removes a hundred thousand files faster in the order in
// which it keeps them.
std::optional<std::vector<std::string>> LinuxBinFolder::names() const {
    const FileDescriptor folder = openFolder(files_.get(), ".");
    if (!folder) {
        return std::nullopt;
    }
    DirectoryReader::Buffer buffer = DirectoryReader::makeBuffer();
    DirectoryReader reader(folder.get(), buffer);
    std::vector<std::pair<std::uint64_t, std::string>> entries;
    while (const auto entry = reader.next()) {
        entries.emplace_back(entry->inode, entry->name);
    }
    if (reader.error() != 0) {
        errno = reader.error();
        return std::nullopt;
    }
    std::sort(entries.begin(), entries.end());
    std::vector<std::string> names;
    names.reserve(entries.size());
    for (auto& [inode, name] : entries) {
        names.push_back(std::move(name));
    }
    return names;
}

void LinuxBinFolder::remove(const std::string& name) {
    removeItem(files_.get(), path_, name, mounts_);
    if (!notes_) {
        return;
    }
    // To ask for a note that is not there takes a third of the time of removing a file.
    std::call_once(notesListed_, [&] {
        auto names = namesInFolder(notes_.get(), ".").value_or(std::vector<std::string>());
        noteNames_.insert(std::make_move_iterator(names.begin()),
                          std::make_move_iterator(names.end()));
    });
    const std::string note = name + std::string(trashInfoExtension);
    if (noteNames_.contains(note)) {
        unlinkat(notes_.get(), note.c_str(), 0);
    }
}

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
