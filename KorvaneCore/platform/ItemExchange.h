#pragma once

#include "KorvaneCore/foundation/FileURL.h"

namespace korvane {

/// Lets two items of one file system change places in one step: at every moment each of the two
/// names has a whole item. 0, or errno: EINVAL or ENOSYS where the system cannot do that, and then
/// nothing has changed. Any thread.
[[nodiscard]] int exchangeItems(const FileURL& first, const FileURL& second) noexcept;

/// Flushes the file system that holds a folder, so that what was put there survives a loss of
/// power. 0, or errno. Any thread.
[[nodiscard]] int flushFileSystem(const FileURL& folder) noexcept;

} // namespace korvane
