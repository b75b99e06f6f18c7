#include "Korvane/tools/Cleanup.h"

#include "Korvane/tools/Refusal.h"
#include "Korvane/tools/Services.h"
#include "KorvaneCore/cleaning/SafetyGuard.h"

#include <iterator>

namespace korvane {

namespace {

/// Takes what no cleanup may touch out of an operation and accounts for it.
std::vector<CleanupFailure> takeOutFreedOtherwise(std::vector<ScanItem>& items) {
    std::vector<CleanupFailure> refused;
    std::erase_if(items, [&](const ScanItem& item) {
        const auto sentence = freedOtherwise(item.heuristicID);
        if (sentence) {
            refused.push_back(
                {item, std::string(*sentence), CleanupFailure::Kind::protectedLocation});
        }
        return sentence.has_value();
    });
    return refused;
}

} // namespace

CleanupResult runCleanup(CleanupOperation operation, DeletionMode mode, Services& services,
                         const CleanupProgressHandler& progress) {
    std::vector<CleanupFailure> refused = takeOutFreedOtherwise(operation.items);
    const SafetyGuard guard(services.home());
    const Cleaner cleaner(services.auditLog(), services.fileManager(), guard, services.exclusions(),
                          services.home());
    CleanupResult result = cleaner.clean(operation, mode, progress);
    std::move(refused.begin(), refused.end(), std::back_inserter(result.failed));
    return result;
}

} // namespace korvane
