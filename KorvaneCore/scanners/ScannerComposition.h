#pragma once

#include "KorvaneCore/platform/SoftwareInventory.h"
#include "KorvaneCore/platform/UserFolders.h"
#include "KorvaneCore/scanners/CompositeScanner.h"
#include "KorvaneCore/scanners/SmartScanScope.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Which scanners make up a tool and a Smart Scan. Any thread.
namespace korvane::ScannerComposition {

/// The ids of the scanners behind a tool, in order; a tool that is not composed is its own.
[[nodiscard]] std::vector<std::string> componentScannerIDs(std::string_view toolID);

/// Whether a scanner is among those behind a tool: which remembered results belong to it.
[[nodiscard]] bool toolCovers(std::string_view toolID, std::string_view scannerID);

/// The six scanners of a Smart Scan for which nothing was chosen. `provider`: the installed
/// software; null stands for that of the system.
[[nodiscard]] ScannerList
defaultSmartScan(const UserFolders& folders,
                 const std::shared_ptr<const SoftwareInventory>& provider = nullptr);

/// One scanner for each of these, in their order.
[[nodiscard]] ScannerList
scanners(std::span<const SmartScanScope> scopes, const UserFolders& folders,
         const std::shared_ptr<const SoftwareInventory>& provider = nullptr);

} // namespace korvane::ScannerComposition
