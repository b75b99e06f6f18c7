#pragma once

#include "KorvaneCore/scanners/CustomRule.h"

#include <vector>

namespace korvane {

/// Rules for where programs on Linux keep what they can make or fetch again. Offered to the user,
/// who takes them over as rules of his own.
[[nodiscard]] std::vector<CustomRule> linuxRulePreset();

} // namespace korvane
