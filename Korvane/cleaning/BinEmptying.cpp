#include "Korvane/cleaning/BinEmptying.h"

#include "Korvane/tools/Services.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/scanners/TrashScanner.h"

namespace korvane {

std::vector<ScanItem> fullBins(const Services& services) {
    return TrashScanner(services.folders()).scan().items;
}

BinEmptying emptyBins(std::span<const ScanItem> bins, Services& services) {
    BinEmptying account;
    account.outcome = TrashEmptier(services.exclusions(), services.folders()).empty(bins);
    const TrashEmptier::Outcome& outcome = account.outcome;
    std::vector<std::string> paths;
    std::int64_t bytes = 0;
    for (const ScanItem& bin : outcome.emptied) {
        paths.push_back(pathText(bin.path()));
        bytes = checkedAdd(bytes, bin.sizeBytes);
    }
    if (paths.empty() && outcome.failures.empty()) {
        return account;
    }
    try {
        services.auditLog().record("trash", std::move(paths),
                                   static_cast<std::int64_t>(outcome.failures.size()), bytes,
                                   UUID::random(), {}, Date::now());
    } catch (const std::exception& error) {
        account.auditFailure = localizedDescription(error);
    }
    return account;
}

} // namespace korvane
