#pragma once

#include "KorvaneCore/foundation/Date.h"
#include "KorvaneCore/foundation/Hashing.h"
#include "KorvaneCore/foundation/Json.h"
#include "KorvaneCore/foundation/UUID.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// Where something was and where it is in the Bin. Both are path texts (`pathText`): the path, or
/// its file URL when the path is not UTF-8.
struct RestorableItem {
    std::string original;
    std::string trashed;

    friend bool operator==(const RestorableItem&, const RestorableItem&) = default;
};

/// An acknowledged break of the chain.
struct ChainRestart {
    std::string reason; ///< the user's note
    Date recordedAt;
    UUID acknowledgedOperationID;            ///< the entry whose break is excused
    std::optional<std::string> previousHead; ///< hash of the newest entry at that time

    friend bool operator==(const ChainRestart&, const ChainRestart&) = default;
};

/// One recorded operation.
struct AuditEntry {
    Date timestamp;
    UUID operationID;
    std::string scannerID; ///< "chain-restart" for a restart, "restore" for a restore
    std::int64_t itemCount = 0;
    std::int64_t succeededCount = 0;
    std::int64_t failedCount = 0;
    std::int64_t bytesReclaimed = 0;
    std::vector<std::string> paths; ///< path texts
    std::optional<std::vector<RestorableItem>> restorable;
    std::optional<std::string> prevHash;  ///< hash of the entry before; absent for the first
    std::optional<std::string> entryHash; ///< absent only in entries older than chaining
    std::optional<ChainRestart> chainRestart;

    /// The text that is hashed; independent of JSON, whole seconds only, `entryHash` not in it.
    [[nodiscard]] std::string canonicalText() const;
    /// HMAC-SHA256 of the canonical text, 64 lower-case hexadecimal digits.
    [[nodiscard]] std::string computeHash(HMACSHA256& authenticator) const;

    /// The members in the order above, absent ones left out, dates in ISO 8601.
    [[nodiscard]] Json toJson() const;
    /// One line of a log file, without the line feed.
    [[nodiscard]] std::string encodeLine() const;

    friend bool operator==(const AuditEntry&, const AuditEntry&) = default;
};

} // namespace korvane
