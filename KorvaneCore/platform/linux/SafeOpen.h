#pragma once

#include "KorvaneCore/foundation/FileDescriptor.h"

#include <cstdint>
#include <optional>
#include <string>

namespace korvane {

/// Opens a folder for reading by its name in an open folder. Never through a link and never on
/// another mount, bind mounts included. Empty with `errno` set: EXDEV for a mount point, ELOOP or
/// ENOTDIR for what is no folder.
[[nodiscard]] FileDescriptor openSubfolder(int parent, const char* name) noexcept;

/// Opens a folder by its absolute path, of any length, on which no link may lie: ELOOP then.
/// `flags` is O_RDONLY, or O_PATH, which asks for no right to read the folder.
[[nodiscard]] FileDescriptor openWithoutLinks(const std::string& path, int flags);

/// Which mount an open file is on: the number that the mount table gives it. Nothing when the
/// kernel does not say.
[[nodiscard]] std::optional<std::uint64_t> mountID(int descriptor) noexcept;

} // namespace korvane
