#include "Korvane/tools/Confirmation.h"

#include "KorvaneCore/foundation/CheckedArithmetic.h"

namespace korvane {

Confirmation makeConfirmation(DeletionMode mode, std::span<const ScanItem> selected) {
    Confirmation confirmation;
    for (const ScanItem& item : selected) {
        confirmation.selectedBytes = checkedAdd(confirmation.selectedBytes, item.sizeBytes);
    }
    confirmation.question = confirmationQuestion(mode, selected.size(), "item");
    confirmation.consequence = consequence(mode, confirmation.selectedBytes);
    confirmation.actionTitle = actionTitle(mode);
    return confirmation;
}

} // namespace korvane
