#pragma once

#include "KorvaneCore/audit/AuditEntry.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

class AuditKeyStore;
struct CleanupOperation;
struct CleanupResult;

/// What a walk along the hash chain found.
struct AuditChainResult {
    enum class Coverage { verified, broken, unverifiable, empty };
    Coverage coverage = Coverage::empty;
    std::int64_t checkedCount = 0;              ///< chained entries that verified
    std::optional<UUID> firstBrokenOperationID; ///< where verification failed
    std::int64_t recordedRestarts = 0;          ///< acknowledged breaks in an unbroken chain

    friend bool operator==(const AuditChainResult&, const AuditChainResult&) = default;
};

[[nodiscard]] std::string_view rawValue(AuditChainResult::Coverage coverage) noexcept;

/// The append-only, hash-chained record of everything removed and restored: one file of JSON lines
/// a UTC day. No file is ever rewritten, truncated or deleted. Any thread; several processes may
/// append at once (a lock on the folder covers reading the head and writing).
class AuditLog {
  public:
    /// `rootURL` is usually `<Application Support>/Korvane/Audit`; made on the first append. The
    /// key store must outlive the log.
    AuditLog(FileURL rootURL, AuditKeyStore& keys);

    [[nodiscard]] const FileURL& rootURL() const noexcept { return rootURL_; }

    /// Records one cleanup. Throws FileError when the record could not be written durably.
    void record(const CleanupOperation& operation, const CleanupResult& result,
                std::span<const RestorableItem> restorable, const Date& at);

    /// Records a removal that was no CleanupOperation; `paths` are those that went. Throws as
    /// above.
    void record(std::string scannerID, std::vector<std::string> paths, std::int64_t failedCount,
                std::int64_t bytesReclaimed, const UUID& operationID,
                std::vector<RestorableItem> restorable, const Date& at);

    /// Appends an entry made by the caller; its hashes are filled in. Throws as above.
    void append(AuditEntry entry);

    /// Appends and returns the entry that excuses the break at `acknowledging`. Throws as above.
    AuditEntry recordChainRestart(std::string reason, const UUID& acknowledging);

    /// Every readable entry, newest first (entries of one second: the later written first).
    [[nodiscard]] std::vector<AuditEntry> entries() const;

    [[nodiscard]] AuditChainResult verifyChain() const;

    /// Whether the folder holds anything named "audit-…". Takes no lock.
    [[nodiscard]] bool hasLogFiles() const;

  private:
    // Callers hold both locks.
    [[nodiscard]] std::optional<std::string> headHash() const;
    void write(AuditEntry& entry, std::optional<std::string> head);

    FileURL rootURL_;
    AuditKeyStore& keys_;
    mutable std::mutex lock_;
};

} // namespace korvane
