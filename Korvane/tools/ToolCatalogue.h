#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/scan/ModuleScanner.h"
#include "KorvaneCore/scanners/SmartScanScope.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

class Services;

/// One tool of the sidebar and of the command.
struct Tool {
    /// What a scan must be told.
    enum class Needs { nothing, folder, app };
    /// What a scan may be told besides.
    struct Options {
        bool scopes = false;
        bool minimumBytes = false;
        bool limit = false;
        bool threshold = false;
    };

    std::string_view id;
    std::string_view displayName;
    Needs needs = Needs::nothing;
    Options options{};
};

[[nodiscard]] std::string_view rawValue(Tool::Needs needs) noexcept;

/// What a scan is about, as far as its tool needs it; what is absent takes the tool's own value.
struct ScanRequest {
    FileURL folder{};  ///< for tools that need a folder
    std::string app{}; ///< the name, identifier or path of an installed application
    std::optional<std::vector<SmartScanScope>> scopes{};
    std::optional<std::int64_t> minimumBytes{};
    std::optional<std::int64_t> limit{};
    std::optional<std::int64_t> threshold{};
};

/// A scan cannot be begun; what() is the sentence for the user.
class ScanRequestError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// All tools, and the scanner behind each.
namespace ToolCatalogue {

[[nodiscard]] std::span<const Tool> all() noexcept;
/// The tool of this id; null when there is none.
[[nodiscard]] const Tool* tool(std::string_view id) noexcept;
/// Throws ScanRequestError when what the request names is not there. The scanner must not outlive
/// `services`.
[[nodiscard]] std::shared_ptr<const ModuleScanner>
makeScanner(const Tool& tool, const ScanRequest& request, Services& services);

} // namespace ToolCatalogue

} // namespace korvane
