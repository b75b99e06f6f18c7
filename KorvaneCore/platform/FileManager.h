#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace korvane {

/// One operation's use of the Bin. Keeps folders open and sums up what must be flushed, so that
/// many items cost little more than their renames. Used by one thread at a time.
class BinSession {
  public:
    virtual ~BinSession() = default;

    /// Moves the item itself (never what a link points to) to the Bin of its file system and
    /// answers where it is now. As for `removeItem`, no link may lie above it. Throws FileError;
    /// then the item is still in its place: it is never erased and never copied.
    virtual FileURL trashItem(const FileURL& url) = 0;

    /// Makes everything moved so far durable: one flush a file system touched. Never throws; a
    /// flush that fails is reported as false.
    virtual bool synchronize() noexcept = 0;
};

/// What the operating system does to files. All paths are absolute; no operation follows a link in
/// the last component, or a link that was swapped in while it worked. Any thread.
class FileManager {
  public:
    virtual ~FileManager() = default;

    [[nodiscard]] virtual std::unique_ptr<BinSession> openBin() = 0;

    /// Removes a file, a link or a whole tree for good. No link may lie on the path above the item
    /// (ELOOP): the caller judged where the path leads, and hands over that place. Never leaves the
    /// tree: links are removed themselves, a mount point inside (bind mounts too) fails the item
    /// before anything of it is removed. Throws FileError naming the first thing that would not go,
    /// and stops there: what is left of an item that the user will be told about as failed is as
    /// much as possible.
    virtual void removeItem(const FileURL& url) = 0;

    /// Moves an item, over file systems too (copied, synced, compared, then removed). Never
    /// replaces anything: EEXIST when something is at `destination`. Throws FileError; then the
    /// source is whole and nothing of a copy is left. Over file systems it has succeeded once the
    /// copy is in its place: what then cannot be removed of the source stays beside it.
    virtual void moveItem(const FileURL& source, const FileURL& destination) = 0;

    /// Moves an item out of the Bin as `moveItem` does and drops the Bin's note about it.
    virtual void restoreItem(const FileURL& trashed, const FileURL& destination) = 0;

    /// Makes a folder with those above it that are missing. Throws FileError.
    virtual void createDirectory(const FileURL& folder) = 0;

    /// Whether a file-system object is there; a link counts by itself, dangling or not.
    [[nodiscard]] virtual bool itemExists(const FileURL& url) const = 0;

    /// Bytes that this user may still write on the volume of the path, or of its nearest existing
    /// ancestor; nothing when that cannot be read.
    [[nodiscard]] virtual std::optional<std::int64_t>
    availableCapacity(const FileURL& url) const = 0;

    /// The real one.
    [[nodiscard]] static FileManager& standard();

    /// The real one with a home Bin elsewhere; it is made when the first item goes there.
    [[nodiscard]] static std::unique_ptr<FileManager> withHomeTrash(const FileURL& trash);
};

} // namespace korvane
