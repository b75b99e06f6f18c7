#pragma once

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/FileURL.h"

#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// The whole of a file; nothing when it does not exist. Throws FileError for any other failure, a
/// folder or a special file at that place included.
[[nodiscard]] std::optional<std::string> readFile(const FileURL& file);

/// Replaces or makes a file so that after a crash at any moment either the old or the new content
/// is there, whole: a temporary file beside it (hidden, exclusive, mode 0600), synced, renamed,
/// folder synced. A link at that place is followed, so that a linked settings file stays linked.
/// Throws FileError; then the old content stands and nothing is left behind.
void writeFileAtomically(const FileURL& file, std::string_view content);

/// Makes the folder and those above it that are missing (mode 0700 for what is made). Throws
/// FileError.
void createDirectories(const FileURL& folder);

/// An exclusive lock between processes, held while the object lives. Taken on the folder itself, so
/// that no lock file is ever made.
class FolderLock {
  public:
    /// Waits for the lock. Throws FileError when the folder cannot be opened or locked.
    explicit FolderLock(const FileURL& folder);

  private:
    FileDescriptor descriptor_;
};

/// Writes all of it, going on after interruptions and short writes. Throws FileError for `path`.
void writeAll(int descriptor, std::string_view content, const std::string& path);

} // namespace korvane
