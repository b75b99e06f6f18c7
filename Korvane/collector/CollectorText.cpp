#include "Korvane/collector/CollectorText.h"

#include "KorvaneCore/scan/ByteDisplay.h"

#include <fmt/format.h>

namespace korvane::CollectorText {

namespace {

std::string_view plural(std::size_t count) {
    return count == 1 ? "" : "s";
}

} // namespace

std::string deleteTitle(DeletionMode mode, std::size_t count) {
    return mode == DeletionMode::permanent ? "Delete permanently"
                                           : fmt::format("Move {} to Bin", count);
}

std::string permanentQuestion(std::size_t count) {
    return fmt::format("Delete {} collected item{} permanently?", count, plural(count));
}

std::string permanentConsequence(std::size_t count, std::int64_t bytes) {
    return fmt::format("Removes {} item{}, {}, permanently. Cannot be undone.", count,
                       plural(count), ByteDisplay::format(bytes));
}

} // namespace korvane::CollectorText

namespace korvane {

Confirmation makeCollectorConfirmation(DeletionMode mode, std::span<const ScanItem> items) {
    Confirmation confirmation = makeConfirmation(mode, items);
    confirmation.actionTitle = CollectorText::deleteTitle(mode, items.size());
    if (mode == DeletionMode::permanent) {
        confirmation.question = CollectorText::permanentQuestion(items.size());
        confirmation.consequence =
            CollectorText::permanentConsequence(items.size(), confirmation.selectedBytes);
    }
    return confirmation;
}

} // namespace korvane
