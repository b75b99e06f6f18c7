#pragma once

#include "Korvane/tools/ToolDriver.h"
#include "KorvaneCore/cleaning/CleanupResult.h"
#include "KorvaneCore/cleaning/ExclusionStore.h"
#include "KorvaneCore/cleaning/Restorer.h"
#include "KorvaneCore/foundation/Json.h"
#include "KorvaneCore/scan/PathHeuristic.h"
#include "KorvaneCore/scan/WalkTypes.h"

namespace korvane {

/// How the command writes its values as JSON; dates in ISO 8601.
[[nodiscard]] Json toJson(const WalkEntry& entry);
[[nodiscard]] Json toJson(const WalkSummary& summary);
[[nodiscard]] Json toJson(const Exclusion& exclusion);
[[nodiscard]] Json toJson(const RestorableItem& item);
[[nodiscard]] Json toJson(const PathHeuristic& row, const FileURL& home);
[[nodiscard]] Json toJson(const std::vector<ScanItem>& items);
[[nodiscard]] Json toJson(const std::vector<CleanupFailure>& failures);
[[nodiscard]] Json toJson(const CleanupResult& result);
/// `null` for an absent value.
[[nodiscard]] Json orNull(const std::optional<std::string>& text);

} // namespace korvane
