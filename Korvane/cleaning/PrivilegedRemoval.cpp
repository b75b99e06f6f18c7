#include "Korvane/cleaning/PrivilegedRemoval.h"

#include "Korvane/tools/Services.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/scan/ByteDisplay.h"
#include "KorvaneCore/scan/FileSystemSize.h"

#include <unordered_map>
#include <unordered_set>

#include <fcntl.h>

#include <fmt/format.h>

namespace korvane {

namespace {

using Paths = std::unordered_set<FileURL>;

bool isInsideOneOf(const Paths& paths, FileURL url) {
    while (url.path().size() > 1) {
        url = url.deletingLastPathComponent();
        if (paths.contains(url)) {
            return true;
        }
    }
    return false;
}

bool isLink(const FileURL& url) {
    FileFacts facts;
    return readFacts(AT_FDCWD, url.path().c_str(), facts) == 0 &&
           facts.kind == DirectoryReader::Kind::link;
}

PrivilegedRemover remover(Services& services, Elevation& elevation) {
    return {services.exclusions(), services.home(), services.folders().temporary, elevation};
}

} // namespace

PrivilegedRequest preparePrivilegedRemoval(std::span<const FileURL> urls, Services& services) {
    PrivilegedRequest request{remover(services, Elevation::standard()).screen(urls), {}};
    Paths all;
    for (const auto& item : request.screening.accepted) {
        all.insert(item.url);
    }
    Paths measured;
    for (const auto& item : request.screening.accepted) {
        const bool counts =
            !isLink(item.url) && !isInsideOneOf(all, item.url) && measured.insert(item.url).second;
        request.sizes.push_back(counts ? FileSystemSize::allocatedSize(item.url) : 0);
    }
    return request;
}

Confirmation makeConfirmation(const PrivilegedRequest& request, const Elevation& elevation) {
    Confirmation confirmation;
    for (const std::int64_t size : request.sizes) {
        confirmation.selectedBytes = checkedAdd(confirmation.selectedBytes, size);
    }
    const std::size_t count = request.sizes.size();
    confirmation.question = "Remove with administrator privileges?";
    confirmation.consequence =
        fmt::format("Korvane will {}permanently remove {} ({}). This cannot be undone.",
                    elevation.asksUser() ? "ask for your administrator password, then " : "",
                    count == 1 ? "this item" : fmt::format("these {} items", count),
                    ByteDisplay::formatAmount(confirmation.selectedBytes));
    confirmation.actionTitle = "Remove with administrator privileges";
    return confirmation;
}

PrivilegedRemoval removeWithPrivileges(PrivilegedRequest request, Services& services,
                                       Elevation& elevation) {
    std::unordered_map<FileURL, std::int64_t> sizes;
    for (std::size_t i = 0; i < request.sizes.size(); ++i) {
        sizes.emplace(request.screening.accepted[i].url, request.sizes[i]);
    }
    PrivilegedRemoval removal;
    removal.result = remover(services, elevation).remove(std::move(request.screening));
    const PrivilegedRemover::Result& result = removal.result;
    std::vector<std::string> paths;
    for (const FileURL& url : result.removed) {
        // One that was named twice went once.
        if (const auto entry = sizes.extract(url)) {
            paths.push_back(pathText(url.path()));
            removal.bytesReclaimed = checkedAdd(removal.bytesReclaimed, entry.mapped());
        }
    }
    if (paths.empty() && !result.completed) {
        return removal;
    }
    try {
        services.auditLog().record(
            "uninstaller", std::move(paths),
            static_cast<std::int64_t>(result.survivors.size() + result.refusals.size()),
            removal.bytesReclaimed, UUID::random(), {}, Date::now());
    } catch (const std::exception& error) {
        removal.auditFailure = localizedDescription(error);
    }
    return removal;
}

} // namespace korvane
