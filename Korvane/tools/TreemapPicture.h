#pragma once

#include "KorvaneCore/scanners/DiskUsageNode.h"

#include <span>
#include <string>

namespace korvane {

/// A folder's entries as a treemap: a picture for people, as SVG text. Each entry is coloured by
/// its kind, named where its rectangle has room for a name, and says its name and size when pointed
/// at; a title names the folder and what it takes, a legend the colours. Width and height, in
/// points and at least 1, are those of the treemap; title and legend come on top. Any thread.
[[nodiscard]] std::string treemapPicture(const FileURL& folder,
                                         std::span<const DiskUsageNode> nodes, double width,
                                         double height);

} // namespace korvane
