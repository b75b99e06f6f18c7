#pragma once

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/linux/ItemPlace.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

namespace korvane {

/// One Trash folder (freedesktop.org), held open. Not shared between threads.
class TrashDirectory {
  public:
    /// The home Trash, made when it is missing. Links on its path are the user's own and followed.
    /// Null with `errno` set when it cannot be used.
    [[nodiscard]] static std::unique_ptr<TrashDirectory> openHome(const FileURL& trash);

    /// The Trash on the mount with this number and top folder: the user's folder in ".Trash" when
    /// that is a real folder with the sticky bit, else ".Trash-UID"; only one that this user owns.
    /// Null with `errno` set when there is none and none can be made.
    [[nodiscard]] static std::unique_ptr<TrashDirectory> openOnVolume(const std::string& top,
                                                                      std::uint64_t mount);

    /// Moves the item in, its note first. Throws FileError; then it is still in its place and the
    /// note is gone again.
    FileURL accept(const ItemPlace& item);

    /// Whether the path, free of links, is this folder, lies in it or holds it.
    [[nodiscard]] bool isEntangledWith(const std::string& path) const;

    /// The folder's path, free of links.
    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    [[nodiscard]] std::uint64_t mount() const noexcept { return mount_; }

    /// False once the folder was removed from under this object.
    [[nodiscard]] bool isStillThere() const;

    /// Makes what was accepted since the last time durable.
    [[nodiscard]] bool synchronize() noexcept;

  private:
    TrashDirectory() = default;
    [[nodiscard]] static std::unique_ptr<TrashDirectory> open(FileDescriptor folder,
                                                              std::string path, std::string top);
    [[nodiscard]] std::string claimName(const ItemPlace& item);
    [[nodiscard]] std::uint64_t firstFree(const std::string& name, std::uint64_t number) const;
    [[nodiscard]] bool isTaken(const std::string& name, std::uint64_t number) const;
    [[nodiscard]] int writeNote(const std::string& note, const std::string& text) const;

    std::string path_;
    std::string top_; ///< notes hold paths relative to this; empty in the home Trash
    FileDescriptor files_;
    FileDescriptor info_;
    std::uint64_t mount_ = 0;
    std::size_t longestName_ = 255;
    std::unordered_map<std::string, std::uint64_t> nextNumber_;
    bool isTouched_ = false;
};

} // namespace korvane
