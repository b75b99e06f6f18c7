#pragma once

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/platform/DirectoryReader.h"

#include <compare>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

namespace korvane {

/// Tells one file-system object from every other one for as long as it exists.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    friend auto operator<=>(const FileIdentity&, const FileIdentity&) = default;
};

/// What a walk asks about an item.
struct FileFacts {
    DirectoryReader::Kind kind = DirectoryReader::Kind::unknown;
    std::int64_t sizeBytes = 0;      ///< logical size
    std::int64_t allocatedBytes = 0; ///< on disk
    std::timespec modified{};
    FileIdentity identity;
};

/// Reads the facts of a name in an open folder (or AT_FDCWD), of a link itself. Never opens the
/// item, mounts nothing, asks no server. Answers 0 or the errno. Any thread.
[[nodiscard]] int readFacts(int parent, const char* name, FileFacts& facts) noexcept;

/// As `readFacts`, of what a link points to.
[[nodiscard]] int readFactsFollowingLinks(int parent, const char* name, FileFacts& facts) noexcept;

/// Which object an open descriptor stands for; nothing when the system does not say.
[[nodiscard]] std::optional<FileIdentity> identity(int descriptor) noexcept;

/// A path as system calls take it: a name relative to an open folder. Paths longer than one call
/// accepts are gone along piece by piece, so that a path of any length can be reached.
class ReachablePath {
  public:
    explicit ReachablePath(std::string path);

    /// errno when the way to the item is barred, else 0 (whether the item exists is not asked).
    [[nodiscard]] int error() const noexcept { return error_; }
    [[nodiscard]] int parent() const noexcept;
    [[nodiscard]] const char* name() const noexcept { return name_.c_str(); }

  private:
    FileDescriptor parent_;
    std::string name_;
    int error_ = 0;
};

} // namespace korvane
