#include "KorvaneCore/audit/AuditChainVerifier.h"

#include "KorvaneCore/audit/AuditKeyStore.h"

namespace korvane {

bool AuditChainVerifier::hashVerifies(const AuditEntry& entry) {
    if (!authenticator_) {
        authenticator_.emplace(keys_.key());
    }
    return entry.computeHash(*authenticator_) == entry.entryHash;
}

bool AuditChainVerifier::linkVerifies(const AuditEntry& entry) const {
    return entry.prevHash == lastHash_;
}

void AuditChainVerifier::add(const AuditEntry& entry) {
    seenEntry_ = true;
    if (brokenAt_) {
        // Restarts behind the break still decide about links that failed before it.
        if (entry.chainRestart && entry.entryHash && hashVerifies(entry)) {
            excused_.insert(entry.chainRestart->acknowledgedOperationID);
        }
        return;
    }
    if (!entry.entryHash) {
        if (lastHash_) {
            brokenAt_ = Break{entry.operationID, checked_};
        }
        return;
    }
    if (!hashVerifies(entry)) {
        brokenAt_ = Break{entry.operationID, checked_};
        return;
    }
    if (entry.chainRestart) {
        ++restarts_;
        excused_.insert(entry.chainRestart->acknowledgedOperationID);
    }
    if (!linkVerifies(entry)) {
        failedLinks_.push_back({entry.operationID, checked_});
    }
    ++checked_;
    lastHash_ = entry.entryHash;
}

AuditChainResult AuditChainVerifier::result() const {
    AuditChainResult result;
    std::optional<Break> broken = brokenAt_;
    for (const Break& link : failedLinks_) {
        if (!excused_.contains(link.operationID)) {
            broken = link;
            break;
        }
    }
    if (broken) {
        result.coverage = AuditChainResult::Coverage::broken;
        result.checkedCount = broken->checkedBefore;
        result.firstBrokenOperationID = broken->operationID;
    } else if (checked_ > 0) {
        result.coverage = AuditChainResult::Coverage::verified;
        result.checkedCount = checked_;
        result.recordedRestarts = restarts_;
    } else if (seenEntry_) {
        result.coverage = AuditChainResult::Coverage::unverifiable;
    }
    return result;
}

} // namespace korvane
