#pragma once

#include "KorvaneCore/audit/AuditLog.h"
#include "KorvaneCore/foundation/Hashing.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace korvane {

class AuditKeyStore;

/// Walks along the chain once, entry by entry, in file order. An entry's link may be excused by a
/// restart that comes later, so entries whose link fails are remembered and judged at the end.
class AuditChainVerifier {
  public:
    /// The key is asked for when the first chained entry comes.
    explicit AuditChainVerifier(AuditKeyStore& keys) : keys_(keys) {}

    void add(const AuditEntry& entry);
    [[nodiscard]] AuditChainResult result() const;

  private:
    struct Break {
        UUID operationID;
        std::int64_t checkedBefore = 0;
    };

    [[nodiscard]] bool hashVerifies(const AuditEntry& entry);
    [[nodiscard]] bool linkVerifies(const AuditEntry& entry) const;

    AuditKeyStore& keys_;
    std::optional<HMACSHA256> authenticator_;
    bool seenEntry_ = false;
    std::optional<std::string> lastHash_; ///< of the newest entry that passed
    std::int64_t checked_ = 0;
    std::int64_t restarts_ = 0;
    std::vector<Break> failedLinks_;
    std::optional<Break> brokenAt_; ///< a break that nothing can excuse
    std::unordered_set<UUID> excused_;
};

} // namespace korvane
