#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/platform/SoftwareInventory.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

/// How the parts of an inventory read what others wrote. None throws. Any thread.
namespace korvane {

/// Folders that were read already, by whatever path: a folder reached twice is read once, and links
/// that lead in a circle come to an end.
using FoldersRead = std::set<FileIdentity>;

/// The names in a folder, sorted by bytes, links followed. None when there is no such folder or it
/// was read before. A folder that is there and cannot be read, and a cancelled task, leave the
/// listing incomplete.
[[nodiscard]] std::vector<std::string>
namesForInventory(const FileURL& folder, FoldersRead& foldersRead, SoftwareListing& listing);

/// The content of a regular file of at most 1 MiB. Nothing when there is no such file; anything
/// else that keeps it from being read leaves the listing incomplete.
[[nodiscard]] std::optional<std::string> readForInventory(const FileURL& file,
                                                          SoftwareListing& listing);

/// Whether a folder is there, links followed.
[[nodiscard]] bool isFolderThere(const FileURL& url) noexcept;

} // namespace korvane
