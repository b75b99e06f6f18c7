#pragma once

#include "KorvaneCore/foundation/FileURL.h"

namespace korvane {

/// Lays out a believable home in an empty folder: eight browsers, caches, logs, developer folders,
/// duplicates, near-identical pictures, hostile names and places that must never be touched. A few
/// hundred files, the same on every run. Throws FileError.
void layOutSampleHome(const FileURL& home);

} // namespace korvane
