#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <cstddef>
#include <string>
#include <string_view>

/// How paths read where room is short.
namespace korvane::PathDisplay {

/// `home` becomes "~", and of more than `maximumComponents` pieces the first and the last
/// (`maximumComponents` - 2) stay around "…". A maximum below 2 is fatal when shortening is needed.
/// The bytes are kept: pass the result through `displayText` before showing it.
[[nodiscard]] std::string shorten(std::string_view path, std::size_t maximumComponents,
                                  const FileURL& home);

} // namespace korvane::PathDisplay
