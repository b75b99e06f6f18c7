#pragma once

#include "KorvaneCore/platform/SoftwareInventory.h"

#include <string_view>
#include <vector>

namespace korvane {

/// The installed applications that a user may mean by a text: those at that absolute path, else
/// those of that identifier, else those of that name, else those that also go by it; all without
/// regard to case. Empty when there is none, several when the text does not decide. An application
/// that is reached by two paths counts once. Any thread.
[[nodiscard]] std::vector<InstalledApplication> findApplications(const SoftwareInventory& inventory,
                                                                 std::string_view text);

} // namespace korvane
