#pragma once

#include "KorvaneCore/foundation/FileDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// Reads the names in an open folder with few, large system calls. "." and ".." are left out; the
/// order is the file system's. Not shared between threads.
class DirectoryReader {
  public:
    enum class Kind : std::uint8_t { unknown, folder, file, link, other };

    struct Entry {
        std::string_view name; ///< ends in a NUL behind its last byte; valid until the next call
        Kind kind = Kind::unknown; ///< `unknown` where the file system does not say
        std::uint64_t inode = 0;
    };

    /// The memory for one read; may be lent to one reader after another, to one at a time.
    using Buffer = std::vector<std::byte>;
    [[nodiscard]] static Buffer makeBuffer();

    /// `folder` stays the caller's and must be open for reading at its beginning.
    DirectoryReader(int folder, Buffer& buffer) noexcept : folder_(folder), buffer_(buffer) {}

    /// The next entry; nothing at the end or after an error.
    [[nodiscard]] std::optional<Entry> next() noexcept;

    /// errno of the failed read, else 0.
    [[nodiscard]] int error() const noexcept { return error_; }

  private:
    int folder_;
    Buffer& buffer_;
    std::size_t position_ = 0;
    std::size_t filled_ = 0;
    int error_ = 0;
};

/// Opens a folder for reading, by a name relative to an open folder (or AT_FDCWD). Never follows a
/// link in the last component. Empty with `errno` set on failure; ENOTDIR or ELOOP for a link.
[[nodiscard]] FileDescriptor openFolder(int parent, const char* name) noexcept;

/// As `openFolder`, following links.
[[nodiscard]] FileDescriptor openFolderFollowingLinks(int parent, const char* name) noexcept;

/// The names directly in a folder, sorted by bytes, links along its path followed. Nothing when it
/// cannot be read to its end (`errno` says why).
[[nodiscard]] std::optional<std::vector<std::string>> namesInFolder(const std::string& path);

/// As above, of a folder by its name relative to an open one; "." for the open folder itself.
[[nodiscard]] std::optional<std::vector<std::string>> namesInFolder(int parent, const char* name);

} // namespace korvane
