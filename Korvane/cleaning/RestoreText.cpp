#include "Korvane/cleaning/RestoreText.h"

#include <fmt/format.h>

namespace korvane::RestoreText {

namespace {

std::string countedItems(std::size_t count) {
    return fmt::format("{} item{}", count, count == 1 ? "" : "s");
}

} // namespace

std::string canBeRestored(std::int64_t count) {
    return fmt::format("{} can be restored", count);
}

std::string couldNotBeRestored(std::size_t count) {
    return fmt::format("{} could not be restored.", count);
}

std::string puttingBack(std::size_t count) {
    return fmt::format("Putting back {}…", countedItems(count));
}

std::string outcome(const RestoreOutcome& outcome) {
    const std::string restored = fmt::format("Put back {}.", countedItems(outcome.restored.size()));
    if (outcome.failed.empty()) {
        return restored;
    }
    const std::string failed = couldNotBeRestored(outcome.failed.size());
    return outcome.restored.empty() ? failed : restored + " " + failed;
}

std::optional<std::int64_t> restorableBytes(const RestorableOp& operation) {
    const bool isWhole = operation.restorableCount == operation.entry.succeededCount;
    return isWhole ? std::optional(operation.entry.bytesReclaimed) : std::nullopt;
}

} // namespace korvane::RestoreText
