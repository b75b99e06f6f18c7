#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/foundation/Hashing.h"

namespace korvane {

/// The SHA-256 of a regular file's content. Throws FileError for anything else, and UpdateError
/// when the surrounding task is cancelled. Any thread.
[[nodiscard]] Digest256 fileDigest(const FileURL& file);

} // namespace korvane
