#include "Korvane/audit/IntegrityText.h"

#include <fmt/format.h>

namespace korvane {

namespace {

std::string verifiedMessage(const AuditChainResult& result) {
    if (result.recordedRestarts == 0) {
        return fmt::format("{} chained entries verified - the audit log hasn't been edited outside "
                           "Korvane.",
                           result.checkedCount);
    }
    return fmt::format("{} chained entries verified. The log also carries {} acknowledged break{} "
                       "- a point where entries were known to be missing, recorded rather than "
                       "hidden.",
                       result.checkedCount, result.recordedRestarts,
                       result.recordedRestarts == 1 ? "" : "s");
}

} // namespace

std::string integrityMessage(const AuditChainResult& result) {
    switch (result.coverage) {
    case AuditChainResult::Coverage::verified:
        return verifiedMessage(result);
    case AuditChainResult::Coverage::broken:
        return "The hash chain doesn't verify - an entry may have been changed, removed, or "
               "reordered outside Korvane.";
    case AuditChainResult::Coverage::unverifiable:
        return "These entries predate tamper-evident chaining, so their integrity can't be "
               "attested.";
    case AuditChainResult::Coverage::empty:
        break;
    }
    return "No cleanup operations have been logged yet.";
}

std::string integrityStatus(const AuditChainResult& result) {
    switch (result.coverage) {
    case AuditChainResult::Coverage::verified:
        return fmt::format("{} operations verified", result.checkedCount);
    case AuditChainResult::Coverage::broken:
        return "Chain broken - verification failed";
    case AuditChainResult::Coverage::unverifiable:
        return "Entries present, but not chain-verifiable";
    case AuditChainResult::Coverage::empty:
        break;
    }
    return "No operations logged yet";
}

} // namespace korvane
