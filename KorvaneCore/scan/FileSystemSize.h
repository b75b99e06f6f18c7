#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <cstdint>
#include <functional>
#include <future>
#include <span>
#include <vector>

namespace korvane {
class ProcessLauncher;
}

/// How much one path occupies. Never throws; 0 for what cannot be measured.
namespace korvane::FileSystemSize {

/// A file's logical size; for a folder (or a link to one) the allocated bytes of the regular files
/// below it. Hidden files and what is inside hidden folders are not counted, links below are not
/// followed. Large trees use more than one processor. Ends early with what it has when the
/// surrounding task is cancelled.
[[nodiscard]] std::int64_t allocatedSize(const FileURL& url);

/// `allocatedSize` of each, in parallel, in input order.
[[nodiscard]] std::vector<std::int64_t> allocatedSizes(std::span<const FileURL> urls);

/// `allocatedSize` on a thread of its own, for callers that must not wait for the disk.
[[nodiscard]] std::future<std::int64_t> allocatedSizeAsync(FileURL url);

/// What "/usr/bin/du -sk" says, in bytes; 0 when it fails or says nothing that is a number.
[[nodiscard]] std::int64_t diskUsage(const FileURL& url, ProcessLauncher& launcher);

} // namespace korvane::FileSystemSize
