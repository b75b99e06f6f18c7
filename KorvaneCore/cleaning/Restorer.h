#pragma once

#include "KorvaneCore/audit/AuditEntry.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

class AuditLog;
class FileManager;

struct RestoreFailure {
    RestorableItem item;
    std::string error; ///< shown to the user

    friend bool operator==(const RestoreFailure&, const RestoreFailure&) = default;
};

struct RestoreOutcome {
    std::vector<RestorableItem> restored; ///< as given, in input order
    std::vector<RestoreFailure> failed;   ///< in input order
};

/// An operation of which something can still be put back.
struct RestorableOp {
    AuditEntry entry;
    std::int64_t restorableCount = 0; ///< how many of its items are still in the Bin
};

/// Puts items from the Bin back where they were, never over anything, and records that in the log.
/// What it is given must outlive it. Any thread.
class Restorer {
  public:
    /// Marks the entries of the log that record a restore.
    static constexpr std::string_view scannerID = "restore";

    Restorer(AuditLog& audit, FileManager& fileManager);

    /// Does not throw and never stops early.
    [[nodiscard]] RestoreOutcome restore(std::span<const RestorableItem> items) const;

    /// A file-system object is at the item's place in the Bin, a dangling link included.
    [[nodiscard]] bool isStillInBin(const RestorableItem& item) const;

    /// The log's entries of which something is still in the Bin, newest first.
    [[nodiscard]] std::vector<RestorableOp> restorableOperations() const;

  private:
    void record(const std::vector<RestorableItem>& restored) const;

    AuditLog& audit_;
    FileManager& fileManager_;
};

} // namespace korvane
