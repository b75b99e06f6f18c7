#include "Korvane/updater/BundleSwap.h"

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/UUID.h"
#include "KorvaneCore/platform/DirectoryReader.h"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <utility>

namespace korvane {

namespace {

constexpr std::string_view stagedPrefix = ".Korvane-update-";
constexpr std::string_view previousPrefix = ".Korvane-previous-";
constexpr std::string_view suffix = ".app";

FileURL hiddenName(const FileURL& running, std::string_view prefix) {
    return running.deletingLastPathComponent().appending(
        std::string(prefix) + UUID::random().text() + std::string(suffix));
}

/// Exactly a name that an update gives to its copy.
bool isStagedName(std::string_view name) {
    if (!name.starts_with(stagedPrefix) || !name.ends_with(suffix)) {
        return false;
    }
    name.remove_prefix(stagedPrefix.size());
    name.remove_suffix(suffix.size());
    return UUID::fromText(name).has_value();
}

void renameOrThrow(const FileURL& from, const FileURL& to) {
    if (std::rename(from.path().c_str(), to.path().c_str()) != 0) {
        throw FileError(errno, "replace", to.path());
    }
}

} // namespace

BundleSwap::BundleSwap(FileURL running, const FileURL& app, FileManager& files, Exchange exchange)
    : running_(std::move(running)), lock_(running_.deletingLastPathComponent()),
      staged_(hiddenName(running_, stagedPrefix)), files_(files), exchange_(std::move(exchange)) {
    clearLeftovers();
    files_.moveItem(app, staged_);
    // A power failure after the swap must not find half of the new app in the old one's place.
    if (const int error = flushFileSystem(running_.deletingLastPathComponent()); error != 0) {
        removeStaged();
        throw FileError(error, "save", staged_.path());
    }
}

BundleSwap::~BundleSwap() {
    removeStaged();
}

void BundleSwap::perform() {
    const int error = exchange_(staged_, running_);
    if (error == EINVAL || error == ENOSYS) {
        replaceInTwoSteps();
    } else if (error != 0) {
        throw FileError(error, "replace", running_.path());
    }
    // Flushed or not, one of the two apps is in the place, whole.
    (void)flushFileSystem(running_.deletingLastPathComponent());
}

void BundleSwap::replaceInTwoSteps() const {
    const FileURL previous = hiddenName(running_, previousPrefix);
    renameOrThrow(running_, previous);
    try {
        renameOrThrow(staged_, running_);
    } catch (const FileError&) {
        renameOrThrow(previous, running_);
        throw;
    }
    // From here on the old app is what the destructor clears away.
    renameOrThrow(previous, staged_);
}

void BundleSwap::clearLeftovers() const {
    const FileURL folder = running_.deletingLastPathComponent();
    const auto names = namesInFolder(folder.path());
    if (!names) {
        return;
    }
    for (const std::string& name : *names) {
        if (!isStagedName(name) || running_.lastPathComponent() == name) {
            continue;
        }
        try {
            files_.removeItem(folder.appending(name));
        } catch (const std::exception&) {
            // Somebody else's copy stays; it is in nobody's way.
        }
    }
}

void BundleSwap::removeStaged() const noexcept {
    try {
        if (files_.itemExists(staged_)) {
            files_.removeItem(staged_);
        }
    } catch (const std::exception&) {
        // The next update clears it away.
    }
}

} // namespace korvane
