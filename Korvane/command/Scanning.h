#pragma once

#include "Korvane/command/CommandContext.h"
#include "Korvane/tools/ToolDriver.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvane {

/// What the user typed about a scan.
struct ScanArguments {
    std::string tool;
    std::string subject; ///< a folder or an app, where the tool needs one
    std::vector<std::string> scopes;
    std::optional<std::int64_t> minimumBytes;
    std::optional<std::int64_t> limit;
    std::optional<std::int64_t> threshold;
};

/// Adds the options of the tools to a command.
void addScanOptions(CLI::App& command, ScanArguments& arguments);

/// Checks the arguments, scans with a progress line and answers the driver with its review. Says on
/// stderr which places could not be read. Throws UsageError for arguments that fit no tool,
/// CommandFailure when what they name is not there or the scan failed.
[[nodiscard]] std::unique_ptr<ToolDriver> runScan(CommandContext& context,
                                                  const ScanArguments& arguments);

} // namespace korvane
