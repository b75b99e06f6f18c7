#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <string>

namespace korvane {

/// The file that this process was started from, links resolved; empty when the system does not say.
/// Asked at the start: an update moves the file. Any thread.
[[nodiscard]] FileURL runningExecutable();

/// The version of the operating system as numbers and dots, "14.4.1"; on Linux that of the kernel.
/// Any thread.
[[nodiscard]] std::string systemVersion();

} // namespace korvane
