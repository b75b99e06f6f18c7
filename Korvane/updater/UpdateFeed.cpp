#include "Korvane/updater/UpdateFeed.h"

#include "Korvane/updater/UpdateError.h"
#include "Korvane/updater/UpdateSentences.h"
#include "Korvane/updater/VersionNumber.h"
#include "KorvaneCore/foundation/Json.h"

namespace korvane {

namespace {

std::vector<std::string> textsOf(const Json& feed) {
    std::vector<std::string> notes;
    const auto member = feed.find("notes");
    if (member != feed.end() && member->is_array()) {
        for (const Json& line : *member) {
            if (line.is_string()) {
                notes.push_back(line.get<std::string>());
            }
        }
    }
    return notes;
}

UpdateRelease decode(const Json& feed) {
    UpdateRelease release;
    release.version = requireString(feed, "version");
    release.url = requireString(feed, "url");
    release.sha256 = requireString(feed, "sha256");
    release.notes = textsOf(feed);
    // Taken for absent, a minimum of another type would offer what this system cannot run.
    if (const auto member = feed.find("minimumSystemVersion");
        member != feed.end() && !member->is_null()) {
        release.minimumSystemVersion = requireString(feed, "minimumSystemVersion");
    }
    return release;
}

} // namespace

UpdateRelease parseUpdateFeed(std::string_view body, const WebAddress& feed) {
    try {
        const Json document = parseJson(body);
        if (!document.is_object()) {
            throw UpdateError(UpdateSentences::unreadableFeed);
        }
        UpdateRelease release = decode(document);
        // The version becomes part of a file name in the user's Downloads.
        if (!isVersion(release.version) ||
            (release.minimumSystemVersion && !isVersion(*release.minimumSystemVersion))) {
            throw UpdateError(UpdateSentences::unreadableFeed);
        }
        (void)imageAddress(release, feed);
        return release;
    } catch (const DecodingError&) {
        throw UpdateError(UpdateSentences::unreadableFeed);
    }
}

WebAddress imageAddress(const UpdateRelease& release, const WebAddress& feed) {
    auto address = WebAddress::fromText(release.url);
    if (!address) {
        throw UpdateError(UpdateSentences::unreadableFeed);
    }
    if (!address->isWithin(feed)) {
        throw UpdateError(UpdateSentences::unexpectedPlace);
    }
    return *std::move(address);
}

} // namespace korvane
