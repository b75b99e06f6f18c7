#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/InventoryFiles.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// One text with its key in a file of nested, quoted keys and values.
struct SteamText {
    std::size_t depth = 0; ///< how many braces are open
    std::string key;
    std::string value;

    friend bool operator==(const SteamText&, const SteamText&) = default;
};

/// All texts of such a file in their order; what is damaged is left out. Any thread.
[[nodiscard]] std::vector<SteamText> steamTexts(std::string_view document);

/// Adds the games that a Steam installation knows, in its own folder and in its further libraries.
/// A library that is away (on a drive that is not there) leaves the listing incomplete. Any thread.
void addSteamGames(const FileURL& steam, FoldersRead& foldersRead, SoftwareListing& listing);

} // namespace korvane
