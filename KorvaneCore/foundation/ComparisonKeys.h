#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// The strings under which a location is compared: its standardised path and its standardised path
/// with links resolved on disk, each in Unicode canonical composition and lower-cased; duplicates
/// removed, so one or two. The only place where paths are made comparable.
[[nodiscard]] std::vector<std::string> comparisonKeys(const FileURL& url);

/// As above when the resolved form is known already.
[[nodiscard]] std::vector<std::string> comparisonKeys(const FileURL& standardized,
                                                      const FileURL& resolved);

/// The key with "/" appended unless it ends in one: what the keys of everything inside begin with.
[[nodiscard]] std::string enclosingPrefix(std::string_view key);

} // namespace korvane
