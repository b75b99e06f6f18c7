#pragma once

#include "KorvaneCore/scan/ScanItem.h"

#include <string>
#include <vector>

namespace korvane {

/// What the user confirmed: exactly these items, of this scanner's result.
struct CleanupOperation {
    UUID id = UUID::random();
    std::string scannerID;
    Date approvedAt;
    std::vector<ScanItem> items; ///< in the order in which they were shown
};

} // namespace korvane
