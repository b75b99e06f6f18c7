#pragma once

#include "KorvaneCore/cleaning/DeletionMode.h"
#include "KorvaneCore/scan/ScanItem.h"

#include <cstdint>
#include <span>
#include <string>

namespace korvane {

/// What the user is asked before anything is removed.
struct Confirmation {
    std::string question;    ///< "Move 3 items to the Bin?"
    std::string consequence; ///< what a yes will mean
    std::string actionTitle; ///< the words of the button
    std::int64_t selectedBytes = 0;
};

[[nodiscard]] Confirmation makeConfirmation(DeletionMode mode, std::span<const ScanItem> selected);

} // namespace korvane
