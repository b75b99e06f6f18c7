#include "Korvane/tools/ToolCatalogue.h"

#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/scanners/BrowserCacheScanner.h"

#include <algorithm>
#include <array>

namespace korvane {

namespace {

using MakeScanner = std::unique_ptr<ModuleScanner> (*)(const ScanRequest&);

std::unique_ptr<ModuleScanner> makeBrowserCacheScanner(const ScanRequest& request) {
    return std::make_unique<BrowserCacheScanner>(request.home);
}

constexpr std::array tools = {
    Tool{"browser-cache", "Browser Cache", Tool::Needs::nothing},
};

// In the order of `tools`.
constexpr std::array<MakeScanner, tools.size()> makers = {
    makeBrowserCacheScanner,
};

} // namespace

std::string_view rawValue(Tool::Needs needs) noexcept {
    constexpr std::array<std::string_view, 3> values = {"nothing", "folder", "app"};
    return values.at(static_cast<std::size_t>(needs));
}

std::span<const Tool> ToolCatalogue::all() noexcept {
    return tools;
}

const Tool* ToolCatalogue::tool(std::string_view id) noexcept {
    const auto found =
        std::find_if(tools.begin(), tools.end(), [&](const Tool& one) { return one.id == id; });
    return found == tools.end() ? nullptr : &*found;
}

std::unique_ptr<ModuleScanner> ToolCatalogue::makeScanner(const Tool& tool,
                                                          const ScanRequest& request) {
    for (std::size_t i = 0; i < tools.size(); ++i) {
        if (tools.at(i).id == tool.id) {
            return makers.at(i)(request);
        }
    }
    fatalError("a tool that is not in the catalogue was asked for its scanner");
}

} // namespace korvane
