#pragma once

#include "KorvaneCore/cleaning/CleanupOperation.h"
#include "KorvaneCore/cleaning/CleanupResult.h"

namespace korvane {

class AuditLog;
class ExclusionStore;
class FileManager;
class SafetyGuard;

/// The only component that removes what scanners found. Asks the user's protected paths, then the
/// guard, about every item, removes folders before what is inside them, and writes one audit record
/// of the whole. What it is given must outlive it. One operation at a time; build a new one (with a
/// new guard) for each, so that folders made since are protected.
class Cleaner {
  public:
    Cleaner(AuditLog& audit, FileManager& fileManager, const SafetyGuard& safetyGuard,
            const ExclusionStore& exclusions, FileURL home);

    /// Never throws: every problem is in the result. When the surrounding task is cancelled it
    /// stops before the next item and still writes the record.
    [[nodiscard]] CleanupResult clean(const CleanupOperation& operation, DeletionMode mode,
                                      const CleanupProgressHandler& progress = {}) const;

  private:
    AuditLog& audit_;
    FileManager& fileManager_;
    const SafetyGuard& safetyGuard_;
    const ExclusionStore& exclusions_;
    FileURL home_;
};

} // namespace korvane
