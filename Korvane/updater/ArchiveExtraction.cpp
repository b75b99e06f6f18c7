#include "Korvane/updater/ArchiveExtraction.h"

#include "Korvane/updater/UpdateError.h"
#include "Korvane/updater/UpdateSentences.h"
#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/platform/Libarchive.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane {

namespace {

constexpr std::size_t bufferBytes = 64UL * 1024UL;
constexpr std::size_t longestPath = 1024;
constexpr std::size_t longestName = 255;

[[noreturn]] void refuse() {
    throw UpdateError(UpdateSentences::unopenedImage);
}

std::vector<std::string_view> components(std::string_view path) {
    std::vector<std::string_view> names;
    while (true) {
        const std::size_t slash = path.find('/');
        names.push_back(path.substr(0, slash));
        if (slash == std::string_view::npos) {
            return names;
        }
        path.remove_prefix(slash + 1);
    }
}

/// Releases are made of plain names, so that none can look like another or be read in two ways.
bool isPlainName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.size() <= longestName &&
           std::all_of(name.begin(), name.end(),
                       [](char c) { return c >= ' ' && c < '\x7F' && c != '\\'; });
}

/// The path of an entry below the folder, in its only form. Empty for the folder itself.
std::string entryPath(const char* text) {
    if (text == nullptr) {
        refuse();
    }
    std::string_view path = text;
    if (path.starts_with("./")) {
        path.remove_prefix(2);
    }
    if (path.ends_with('/')) {
        path.remove_suffix(1);
    }
    if (path.empty() || path == ".") {
        return {};
    }
    const auto names = components(path);
    if (path.size() > longestPath || !std::all_of(names.begin(), names.end(), isPlainName)) {
        refuse();
    }
    return std::string(path);
}

class Extraction {
  public:
    Extraction(const Libarchive& api, const FileURL& folder, const ExtractionLimits& limits)
        : api_(api), folder_(folder), limits_(limits), buffer_(bufferBytes),
          reader_(api.readNew(), api.readFree) {}

    void run(const FileURL& archive);

  private:
    void take(archive_entry* entry);
    void takeFile(archive_entry* entry, const std::string& path);
    void takeLink(const std::string& path, const char* target) const;
    [[nodiscard]] std::string placeOf(const std::string& path) const {
        return folder_.path() + "/" + path;
    }

    const Libarchive& api_;
    const FileURL& folder_;
    const ExtractionLimits& limits_;
    std::vector<char> buffer_;
    std::unique_ptr<archive, int (*)(archive*)> reader_;
    std::set<std::string> keys_;    ///< of every entry, in the form in which they collide
    std::set<std::string> folders_; ///< that were made
    std::int64_t bytes_ = 0;
};

void Extraction::run(const FileURL& archive) {
    const FileDescriptor file(open(archive.path().c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (!file || reader_ == nullptr || api_.supportTar(reader_.get()) != ARCHIVE_OK ||
        api_.supportGzip(reader_.get()) != ARCHIVE_OK ||
        api_.supportZstd(reader_.get()) != ARCHIVE_OK ||
        api_.openDescriptor(reader_.get(), file.get(), bufferBytes) != ARCHIVE_OK) {
        refuse();
    }
    while (true) {
        archive_entry* entry = nullptr;
        const int result = api_.nextHeader(reader_.get(), &entry);
        if (result == ARCHIVE_EOF) {
            return;
        }
        // A warning means that something about the entry was not understood.
        if (result != ARCHIVE_OK) {
            refuse();
        }
        take(entry);
    }
}

void Extraction::take(archive_entry* entry) {
    if (Task::isCancelled()) {
        throw UpdateError(UpdateSentences::cancelled);
    }
    const std::string path = entryPath(api_.pathname(entry));
    const auto type = api_.fileType(entry);
    if (path.empty() && type == AE_IFDIR) {
        return;
    }
    // A folder comes before what is in it, so nothing can ever be written through a link.
    const std::string parent(parentPath(path));
    if (path.empty() || api_.hardlink(entry) != nullptr || keys_.size() >= limits_.entries ||
        (!parent.empty() && !folders_.contains(parent)) ||
        !keys_.insert(composedLowercase(path)).second) {
        refuse();
    }
    if (type == AE_IFDIR) {
        // Whatever the mask of this process takes away, the release is for everybody on the
        // computer.
        if (mkdir(placeOf(path).c_str(), 0755) != 0 || chmod(placeOf(path).c_str(), 0755) != 0) {
            throw FileError(errno, "create the folder", placeOf(path));
        }
        folders_.insert(path);
    } else if (type == AE_IFREG) {
        takeFile(entry, path);
    } else if (type == AE_IFLNK) {
        takeLink(path, api_.symlink(entry));
    } else {
        refuse();
    }
}

void Extraction::takeFile(archive_entry* entry, const std::string& path) {
    const std::string place = placeOf(path);
    const mode_t mode = (api_.permissions(entry) & S_IXUSR) != 0 ? 0755 : 0644;
    const FileDescriptor file(
        open(place.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!file) {
        throw FileError(errno, "create", place);
    }
    while (true) {
        const auto count = api_.readData(reader_.get(), buffer_.data(), buffer_.size());
        if (count == 0) {
            break;
        }
        bytes_ += std::max<std::int64_t>(count, 0);
        if (count < 0 || bytes_ > limits_.bytes) {
            refuse();
        }
        if (Task::isCancelled()) {
            throw UpdateError(UpdateSentences::cancelled);
        }
        writeAll(file.get(), std::string_view(buffer_.data(), static_cast<std::size_t>(count)),
                 place);
    }
    if (fchmod(file.get(), mode) != 0) {
        throw FileError(errno, "set the permissions of", place);
    }
}

/// A link may go up from its folder, which is a real one, but not out, and then only down. What it
/// goes through on the way down was held to the same.
void Extraction::takeLink(const std::string& path, const char* target) const {
    std::vector<std::string_view> names = components(target == nullptr ? "" : target);
    std::size_t depth = components(path).size() - 1;
    auto name = names.begin();
    for (; name != names.end() && *name == ".."; ++name) {
        if (depth-- <= 1) {
            refuse();
        }
    }
    if (name == names.end() || !std::all_of(name, names.end(), isPlainName)) {
        refuse();
    }
    if (symlink(target, placeOf(path).c_str()) != 0) {
        throw FileError(errno, "create the link", placeOf(path));
    }
}

} // namespace

void extractArchive(const FileURL& archive, const FileURL& folder, const ExtractionLimits& limits) {
    const Libarchive* api = Libarchive::shared();
    if (api == nullptr) {
        refuse();
    }
    Extraction(*api, folder, limits).run(archive);
}

} // namespace korvane
