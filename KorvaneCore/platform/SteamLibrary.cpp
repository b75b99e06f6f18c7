#include "KorvaneCore/platform/SteamLibrary.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace korvane {

namespace {

// Both spellings exist, from different years.
constexpr std::string_view gameFolders[] = {"steamapps", "SteamApps"};

/// Takes a quoted text off the front of `rest`, which begins with the quotation mark.
std::string takeQuoted(std::string_view& rest) {
    std::string text;
    std::size_t i = 1;
    for (; i < rest.size() && rest[i] != '"'; ++i) {
        i += rest[i] == '\\' && i + 1 < rest.size() ? 1 : 0;
        text += rest[i];
    }
    rest.remove_prefix(std::min(i + 1, rest.size()));
    return text;
}

/// A number as the name: how older files list the further libraries.
bool isNumber(std::string_view text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

void addManifest(const FileURL& file, SoftwareListing& listing) {
    const auto content = readForInventory(file, listing);
    if (!content) {
        return;
    }
    InstalledApplication game{.location = file};
    for (const SteamText& text : steamTexts(*content)) {
        if (text.depth == 1 && text.key == "name") {
            game.name = text.value;
        } else if (text.depth == 1 && text.key == "installdir") {
            game.aliases.push_back(text.value);
        }
    }
    if (game.name.empty() && !game.aliases.empty()) {
        game.name = game.aliases.front();
    }
    if (!game.name.empty()) {
        listing.applications.push_back(std::move(game));
    }
}

void addGamesIn(const FileURL& folder, FoldersRead& foldersRead, SoftwareListing& listing) {
    for (const std::string& name : namesForInventory(folder, foldersRead, listing)) {
        if (name.starts_with("appmanifest_") && name.ends_with(".acf")) {
            addManifest(folder.appending(name), listing);
        }
    }
}

} // namespace

std::vector<SteamText> steamTexts(std::string_view document) {
    std::vector<SteamText> texts;
    std::optional<std::string> key;
    std::size_t depth = 0;
    while (!document.empty()) {
        const char next = document.front();
        if (next == '"') {
            std::string text = takeQuoted(document);
            if (key) {
                texts.push_back({depth, std::move(*key), std::move(text)});
                key.reset();
            } else {
                key = std::move(text);
            }
            continue;
        }
        if (next == '{') {
            key.reset();
            ++depth;
        } else if (next == '}') {
            key.reset();
            depth -= depth > 0 ? 1 : 0;
        } else if (document.starts_with("//")) {
            document.remove_prefix(std::min(document.find('\n'), document.size() - 1));
        }
        document.remove_prefix(1);
    }
    return texts;
}

void addSteamGames(const FileURL& steam, FoldersRead& foldersRead, SoftwareListing& listing) {
    for (const std::string_view name : gameFolders) {
        const FileURL games = steam.appending(name);
        addGamesIn(games, foldersRead, listing);
        const auto libraries = readForInventory(games.appending("libraryfolders.vdf"), listing);
        for (const SteamText& text : steamTexts(libraries.value_or(""))) {
            const bool isLibrary =
                text.depth == 1 ? isNumber(text.key) : text.depth == 2 && text.key == "path";
            const FileURL library(text.value);
            if (!isLibrary || !library.isAbsolute()) {
                continue;
            }
            listing.isComplete = listing.isComplete && isFolderThere(library);
            for (const std::string_view folder : gameFolders) {
                addGamesIn(library.appending(folder), foldersRead, listing);
            }
        }
    }
}

} // namespace korvane
