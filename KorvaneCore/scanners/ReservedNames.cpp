#include "KorvaneCore/scanners/ReservedNames.h"

#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/foundation/UUID.h"

#include <algorithm>
#include <array>

namespace korvane {

namespace {

constexpr std::size_t teamLength = 10;

// Identifiers of the system's maker; everything below them too.
constexpr std::array<std::string_view, 3> systemIdentifiers{"com.apple", "is.workflow",
                                                            "com.shazam"};
constexpr std::array<std::string_view, 2> ownIdentifiers{"com.ostrel.korvane", "korvane"};

// Folders in Application Support that no bundle is named after. Sorted.
constexpr std::array<std::string_view, 96> systemFolders{"accessibility",
                                                         "accounts",
                                                         "addressbook",
                                                         "animoji",
                                                         "app store",
                                                         "apple",
                                                         "applemediaservices",
                                                         "appstore",
                                                         "assistant",
                                                         "audio",
                                                         "automator",
                                                         "baseband",
                                                         "byhost",
                                                         "caches",
                                                         "calendar",
                                                         "calendars",
                                                         "callhistorydb",
                                                         "callhistorytransactions",
                                                         "clouddocs",
                                                         "cloudkit",
                                                         "colorsync",
                                                         "contacts",
                                                         "contextstoreagent",
                                                         "controlcenter",
                                                         "coredata",
                                                         "coreparsec",
                                                         "crashreporter",
                                                         "default.store",
                                                         "differentialprivacy",
                                                         "diskimages",
                                                         "dock",
                                                         "duetexpertcenter",
                                                         "facetime",
                                                         "familysettings",
                                                         "fileprovider",
                                                         "finder",
                                                         "fonts",
                                                         "gamekit",
                                                         "garageband",
                                                         "homeenergyd",
                                                         "homekit",
                                                         "icdd",
                                                         "icloud",
                                                         "icloudmailagent",
                                                         "identityservices",
                                                         "ilifemediabrowser",
                                                         "imovie",
                                                         "itunes",
                                                         "keyboard services",
                                                         "keyboardservices",
                                                         "keychains",
                                                         "knowledge",
                                                         "languagemodeling",
                                                         "livefs",
                                                         "locationaccessstore",
                                                         "logic",
                                                         "logs",
                                                         "mail",
                                                         "messages",
                                                         "mobilesync",
                                                         "music",
                                                         "networkserviceproxy",
                                                         "notes",
                                                         "passwords",
                                                         "photo booth",
                                                         "photos",
                                                         "podcasts",
                                                         "preferences",
                                                         "preview",
                                                         "privatecloudcompute",
                                                         "quick look",
                                                         "quicktime",
                                                         "reminders",
                                                         "safari",
                                                         "screen savers",
                                                         "screen time",
                                                         "script editor",
                                                         "sesstorage",
                                                         "shortcuts",
                                                         "siri",
                                                         "soundanalysis",
                                                         "spotlight",
                                                         "stickersd",
                                                         "stocks",
                                                         "suggestions",
                                                         "syncservices",
                                                         "systemmigration",
                                                         "systemuiserver",
                                                         "tips",
                                                         "translation",
                                                         "transparencyd",
                                                         "tv",
                                                         "videosubscriptionsd",
                                                         "voicetrigger",
                                                         "widgets",
                                                         "xcode"};
static_assert(std::is_sorted(systemFolders.begin(), systemFolders.end()));

bool isTeam(std::string_view text) {
    return text.size() == teamLength && std::all_of(text.begin(), text.end(), [](char c) {
               return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
           });
}

/// Whether a key is one of these identifiers or lies below one.
template <std::size_t count>
bool isBelow(std::string_view key, const std::array<std::string_view, count>& identifiers) {
    return std::any_of(identifiers.begin(), identifiers.end(), [&](std::string_view identifier) {
        return key.starts_with(identifier) &&
               (key.size() == identifier.size() || key[identifier.size()] == '.');
    });
}

} // namespace

std::vector<std::string> folderKeys(std::string_view name) {
    std::vector<std::string> keys{composedLowercase(name)};
    while (true) {
        const std::string& key = keys.back();
        const std::size_t dot = key.find('.');
        const std::string_view first = std::string_view(key).substr(0, dot);
        const bool isPrefix =
            first == "group" || first == "groups" || first == "systemgroup" || isTeam(first);
        if (dot == std::string::npos || dot + 1 == key.size() || !isPrefix) {
            return keys;
        }
        keys.push_back(key.substr(dot + 1));
    }
}

bool isSystemName(std::string_view name) {
    if (UUID::fromText(name)) {
        return true;
    }
    const std::vector<std::string> keys = folderKeys(name);
    return std::any_of(keys.begin(), keys.end(), [](const std::string& key) {
        return isBelow(key, systemIdentifiers) ||
               std::binary_search(systemFolders.begin(), systemFolders.end(), key);
    });
}

bool isOwnName(std::string_view name) {
    const std::vector<std::string> keys = folderKeys(name);
    return std::any_of(keys.begin(), keys.end(),
                       [](const std::string& key) { return isBelow(key, ownIdentifiers); });
}

} // namespace korvane
