#pragma once

#include "KorvaneCore/scanners/CustomRule.h"

namespace korvane {

/// A rule as its user wrote it, with what he left out: an id of its own and the common name. Throws
/// DecodingError with the reason why nobody could follow it.
[[nodiscard]] CustomRule newCustomRule(CustomRule rule);

} // namespace korvane
