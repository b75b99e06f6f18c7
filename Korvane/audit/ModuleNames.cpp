#include "Korvane/audit/ModuleNames.h"

#include <algorithm>
#include <array>
#include <set>

namespace korvane {

namespace {

constexpr std::array names = {
    ModuleName{"cache-cleaner", "Cache Cleaner"},
    ModuleName{"browser-cache", "Browser Cache"},
    ModuleName{"ios-backup", "iOS Backups"},
    ModuleName{"attachments", "Attachments"},
    ModuleName{"uninstaller", "Uninstaller"},
    ModuleName{"large-files", "Large Files"},
    ModuleName{"old-files", "Old Files"},
    ModuleName{"time-machine", "Time Machine"},
    ModuleName{"trash", "Bin"},
    ModuleName{"smart-scan", "Smart Scan"},
    ModuleName{"smart-clean", "Smart Clean"},
    ModuleName{"developer", "Developer Tools"},
    ModuleName{"orphaned-files", "Orphaned Files"},
    ModuleName{"duplicate-finder", "Duplicate Finder"},
    ModuleName{"downloads", "Downloads"},
    ModuleName{"system-files", "System Files"},
    ModuleName{"icloud-cleanup", "iCloud Cleanup"},
    ModuleName{"restore", "Restore Centre"},
    ModuleName{"collector", "Collector"},
    ModuleName{"permissions", "Startup Items"},
    ModuleName{"custom-rules", "Custom Rules"},
    ModuleName{"similar-images", "Similar Images"},
    ModuleName{"duplicate-photos", "Duplicate Photos"},
    ModuleName{"app-footprint", "App Footprint"},
};

} // namespace

std::span<const ModuleName> moduleNames() noexcept {
    return names;
}

std::string_view moduleName(std::string_view scannerID) noexcept {
    const auto found = std::find_if(names.begin(), names.end(), [&](const ModuleName& module) {
        return module.scannerID == scannerID;
    });
    return found == names.end() ? scannerID : found->displayName;
}

std::vector<std::string> modulesOf(std::span<const AuditEntry> entries) {
    std::set<std::string_view> ids;
    for (const AuditEntry& entry : entries) {
        ids.insert(entry.scannerID);
    }
    std::vector<std::string> modules;
    for (const ModuleName& module : names) {
        if (ids.erase(module.scannerID) > 0) {
            modules.emplace_back(module.scannerID);
        }
    }
    modules.insert(modules.end(), ids.begin(), ids.end());
    return modules;
}

} // namespace korvane
