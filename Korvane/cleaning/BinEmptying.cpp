#include "Korvane/cleaning/BinEmptying.h"

#include "Korvane/tools/Services.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/BinFolders.h"
#include "KorvaneCore/scan/ByteDisplay.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scanners/TrashScanner.h"

#include <algorithm>
#include <unordered_set>

#include <fmt/format.h>

namespace korvane {

namespace {

std::optional<std::vector<std::string>> namesIn(const FileURL& bin) {
    const auto folder = OpenBinFolder::open(bin.standardized());
    return folder ? folder->names() : std::nullopt;
}

bool holdsOnly(const FileURL& bin, const std::vector<std::string>& seen) {
    const std::unordered_set<std::string_view> known(seen.begin(), seen.end());
    const auto names = namesIn(bin);
    return !names || std::all_of(names->begin(), names->end(),
                                 [&](const std::string& name) { return known.contains(name); });
}

} // namespace

std::vector<ScanItem> fullBins(const Services& services) {
    return TrashScanner(services.folders()).scan().items;
}

ScanItem binItem(const FileURL& folder, const Services& services) {
    const PathHeuristic& row = PathHeuristics::systemTrashAllVolumes;
    ScanItem bin;
    bin.url = folder;
    bin.category = row.category;
    bin.heuristicID = row.id;
    bin.isDirectory = true;
    if (isBinFolder(folder, services.folders())) {
        bin.sizeBytes = binContentSize(folder, ProcessLauncher::standard());
    }
    return bin;
}

std::vector<BinContent> binContents(Services& services) {
    std::vector<BinContent> bins;
    const ExclusionStore& exclusions = services.exclusions();
    const bool anyProtected = !exclusions.items().empty();
    for (const FileURL& folder : binFolders(services.folders())) {
        if (Task::isCancelled()) {
            break;
        }
        BinContent content;
        content.bin = binItem(folder, services);
        auto names = namesIn(folder);
        content.isReadable = names.has_value();
        content.names = std::move(names).value_or(std::vector<std::string>());
        if (anyProtected) {
            content.protectedCount = static_cast<std::size_t>(
                std::count_if(content.names.begin(), content.names.end(), [&](const auto& name) {
                    return exclusions.blocks(folder.appending(name));
                }));
        }
        if (!content.names.empty() || content.bin.sizeBytes > 0) {
            bins.push_back(std::move(content));
        }
    }
    std::stable_sort(bins.begin(), bins.end(), [](const BinContent& a, const BinContent& b) {
        return a.bin.sizeBytes > b.bin.sizeBytes;
    });
    return bins;
}

BinEmptying emptyBins(std::span<const ScanItem> bins, Services& services) {
    BinEmptying account;
    account.outcome = TrashEmptier(services.exclusions(), services.folders()).empty(bins);
    const TrashEmptier::Outcome& outcome = account.outcome;
    std::vector<std::string> paths;
    for (const ScanItem& bin : outcome.emptied) {
        paths.push_back(pathText(bin.path()));
    }
    if (paths.empty() && outcome.failures.empty()) {
        return account;
    }
    try {
        services.auditLog().record("trash", std::move(paths),
                                   static_cast<std::int64_t>(outcome.failures.size()),
                                   totalBytes(outcome.emptied), UUID::random(), {}, Date::now());
    } catch (const std::exception& error) {
        account.auditFailure = localizedDescription(error);
    }
    return account;
}

BinEmptying emptyBins(std::span<const BinContent> seen, Services& services) {
    std::vector<ScanItem> bins;
    std::vector<CleanupFailure> grown;
    for (const BinContent& content : seen) {
        // Measured anew: what went meanwhile is not what this emptying frees.
        ScanItem bin = binItem(content.bin.url, services);
        if (holdsOnly(bin.url, content.names)) {
            bins.push_back(std::move(bin));
        } else {
            grown.push_back({std::move(bin),
                             "Something came into this Bin after it was shown, so it was left as "
                             "it is.",
                             CleanupFailure::Kind::other});
        }
    }
    BinEmptying account = emptyBins(bins, services);
    account.outcome.failures.insert(account.outcome.failures.end(), grown.begin(), grown.end());
    return account;
}

std::int64_t totalBytes(std::span<const ScanItem> bins) {
    std::int64_t bytes = 0;
    for (const ScanItem& bin : bins) {
        bytes = checkedAdd(bytes, bin.sizeBytes);
    }
    return bytes;
}

std::string emptyingWarning(std::span<const ScanItem> bins) {
    return fmt::format("What is in {} will be deleted permanently ({}). This cannot be undone.",
                       bins.size() == 1 ? "this Bin" : "these Bins",
                       ByteDisplay::formatAmount(totalBytes(bins)));
}

std::string emptyingSummary(const TrashEmptier::Outcome& outcome) {
    return fmt::format("Freed {}.", ByteDisplay::formatAmount(totalBytes(outcome.emptied)));
}

} // namespace korvane
