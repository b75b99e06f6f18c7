#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/scan/ModuleScanner.h"

#include <memory>
#include <span>
#include <string_view>

namespace korvane {

/// One tool of the sidebar and of the command.
struct Tool {
    /// What a scan must be told.
    enum class Needs { nothing, folder, app };

    std::string_view id;
    std::string_view displayName;
    Needs needs = Needs::nothing;
};

[[nodiscard]] std::string_view rawValue(Tool::Needs needs) noexcept;

/// What a scan is about, as far as its tool needs it.
struct ScanRequest {
    FileURL home;
};

/// All tools, and the scanner behind each.
namespace ToolCatalogue {

[[nodiscard]] std::span<const Tool> all() noexcept;
/// The tool of this id; null when there is none.
[[nodiscard]] const Tool* tool(std::string_view id) noexcept;
[[nodiscard]] std::unique_ptr<ModuleScanner> makeScanner(const Tool& tool,
                                                         const ScanRequest& request);

} // namespace ToolCatalogue

} // namespace korvane
