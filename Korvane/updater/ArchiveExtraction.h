#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <cstddef>
#include <cstdint>

namespace korvane {

/// What an archive may unpack to at most.
struct ExtractionLimits {
    std::int64_t bytes = 8LL * 1024 * 1024 * 1024;
    std::size_t entries = 100'000;
};

/// Unpacks a tar archive, plain or compressed with gzip or zstd, into an empty folder of this
/// program's own. The archive is taken to be hostile: nothing but folders, files and links between
/// them comes out, nothing outside the folder is touched, and anything unusual refuses the whole.
/// Throws UpdateError or FileError; what was unpacked so far is the caller's to remove. Any thread.
void extractArchive(const FileURL& archive, const FileURL& folder,
                    const ExtractionLimits& limits = {});

} // namespace korvane
