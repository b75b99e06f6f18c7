#pragma once

#include "KorvaneCore/platform/UserFolders.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvane {

/// The folders that hold what this user moved to a Bin, as far as they exist: of the home folder
/// first, then of every mounted file system, each once however often it is mounted. Links and
/// folders of other users are left out. Mounts nothing. Any thread.
[[nodiscard]] std::vector<FileURL> binFolders(const UserFolders& folders);

/// Whether a path names a Bin folder of this user: ".Trash" directly in the home folder, his own
/// folder in a ".Trashes", and where the platform keeps Bins else. The path is standardised first,
/// links are not resolved. Any thread.
[[nodiscard]] bool isBinFolder(const FileURL& url, const UserFolders& folders);

/// Whether a folder is laid out as a Bin, of whomever and wherever: nothing in it is looked for.
[[nodiscard]] bool looksLikeBin(const FileURL& folder);

/// A Bin folder held open, so that everything is done in that very folder.
class OpenBinFolder {
  public:
    virtual ~OpenBinFolder() = default;

    /// Null with `errno` set when it cannot be read, or is a link.
    [[nodiscard]] static std::unique_ptr<OpenBinFolder> open(const FileURL& url);

    /// What lies directly in it, hidden things too, in the order in which removing it costs least.
    /// Nothing with `errno` set when that cannot be read.
    [[nodiscard]] virtual std::optional<std::vector<std::string>> names() const = 0;

    /// Removes one thing for good, a whole tree too, and then the Bin's note about it; the note of
    /// what did not go is kept. Throws FileError. Several threads may remove different things.
    virtual void remove(const std::string& name) = 0;

    /// Drops the notes about things that are not there any more, however they went; those of the
    /// last minute stay, for somebody may be about to move the thing in. Never fails.
    virtual void dropOrphanedNotes() noexcept = 0;
};

} // namespace korvane
