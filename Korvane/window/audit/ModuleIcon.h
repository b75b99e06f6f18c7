#pragma once

#include <QString>
#include <string_view>

namespace korvane {

/// The icon for the operations of a scanner: that of its screen.
[[nodiscard]] QString moduleIcon(std::string_view scannerID);

} // namespace korvane
