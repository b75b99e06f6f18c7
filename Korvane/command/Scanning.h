#pragma once

#include "Korvane/command/CommandContext.h"
#include "Korvane/tools/ToolDriver.h"

#include <memory>
#include <string>

namespace korvane {

/// What the user typed about a scan.
struct ScanArguments {
    std::string tool;
    std::string subject; ///< a folder or an app, where the tool needs one
};

/// Checks the arguments, scans with a progress line and answers the driver with its review. Throws
/// UsageError for arguments that fit no tool, CommandFailure when the scan failed.
[[nodiscard]] std::unique_ptr<ToolDriver> runScan(CommandContext& context,
                                                  const ScanArguments& arguments);

} // namespace korvane
