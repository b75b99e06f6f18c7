#pragma once

#include "KorvaneCore/cleaning/Restorer.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The words of the Restore Centre.
namespace korvane::RestoreText {

inline constexpr std::string_view checking = "Checking what can be restored…";
inline constexpr std::string_view restoreEverything = "Restore everything";

inline constexpr std::string_view emptyTitle = "Nothing in the Bin can be put back.";
inline constexpr std::string_view emptyExplanation =
    "What Korvane moves to the Bin appears here, and can be put back to where it was until the Bin "
    "is emptied. What was deleted permanently cannot come back.";

/// "3 can be restored"
[[nodiscard]] std::string canBeRestored(std::int64_t count);
/// "2 could not be restored."
[[nodiscard]] std::string couldNotBeRestored(std::size_t count);
/// "Putting back 3 items…"
[[nodiscard]] std::string puttingBack(std::size_t count);
/// "Put back 3 items. 2 could not be restored."
[[nodiscard]] std::string outcome(const RestoreOutcome& outcome);

/// What the items still in the Bin take. Known only while all that the operation removed is there:
/// the log has the sum, not the sizes.
[[nodiscard]] std::optional<std::int64_t> restorableBytes(const RestorableOp& operation);

} // namespace korvane::RestoreText
