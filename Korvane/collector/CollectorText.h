#pragma once

#include "Korvane/tools/Confirmation.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The words of the Collector.
namespace korvane::CollectorText {

inline constexpr std::string_view staged = "staged from across your tools";
inline constexpr std::string_view removeItem = "Remove from Collector";
inline constexpr std::string_view clear = "Empty the Collector without deleting anything";
inline constexpr std::string_view restoreCentre = "Restore Centre…";

/// "Move 3 to Bin" or "Delete permanently".
[[nodiscard]] std::string deleteTitle(DeletionMode mode, std::size_t count);

/// "Delete 3 collected items permanently?"
[[nodiscard]] std::string permanentQuestion(std::size_t count);

/// "Removes 3 items, 12 MB, permanently. Cannot be undone."
[[nodiscard]] std::string permanentConsequence(std::size_t count, std::int64_t bytes);

} // namespace korvane::CollectorText

namespace korvane {

/// What the user is asked before the Collector's items are removed.
[[nodiscard]] Confirmation makeCollectorConfirmation(DeletionMode mode,
                                                     std::span<const ScanItem> items);

} // namespace korvane
