#pragma once

#include "KorvaneCore/cleaning/Cleaner.h"
#include "KorvaneCore/cleaning/CleanupOperation.h"

namespace korvane {

class Services;

/// Runs one confirmed operation with the user's stores and a guard of this moment, so that folders
/// made since the scan are protected too. Items of rows that are freed in a way of their own are
/// not touched; they end among the failures. Blocks until all is done and recorded.
[[nodiscard]] CleanupResult runCleanup(CleanupOperation operation, DeletionMode mode,
                                       Services& services,
                                       const CleanupProgressHandler& progress = {});

} // namespace korvane
