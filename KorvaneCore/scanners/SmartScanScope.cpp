#include "KorvaneCore/scanners/SmartScanScope.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include <unistd.h>

namespace korvane {

namespace {

struct ScopeText {
    std::string_view rawValue;
    std::string_view title;
    std::string_view explanation;
    std::string_view symbol;
};

// In the order of the cases.
constexpr std::array<ScopeText, allSmartScanScopes.size()> texts{
    ScopeText{"caches", "Temporary files",
              "Working files apps rebuild on their own. The usual biggest win.", "shippingbox"},
    ScopeText{"browsers", "Browser data",
              "Cached pages and images. Bookmarks, passwords and history are never touched.",
              "globe"},
    ScopeText{"oldFiles", "Old screenshots and recordings",
              "Screenshots and screen recordings you haven't opened in months.",
              "photo.on.rectangle"},
    ScopeText{"developer", "Developer leftovers",
              "Xcode, simulator and package caches. Often the largest single category on a dev "
              "Mac.",
              "hammer"},
    ScopeText{"leftovers", "Files from apps you've removed",
              "Folders left in your Library by apps that are no longer installed.",
              "shippingbox.and.arrow.backward"},
    ScopeText{"systemFiles", "Large system extras",
              "Apple Intelligence models, GarageBand sounds, virtual machine images.", "cpu"}};

const ScopeText& textsOf(SmartScanScope scope) noexcept {
    return texts[static_cast<std::size_t>(scope)];
}

} // namespace

std::string_view rawValue(SmartScanScope scope) noexcept {
    return textsOf(scope).rawValue;
}

std::optional<SmartScanScope> smartScanScopeFromRawValue(std::string_view text) noexcept {
    const auto found = std::find_if(allSmartScanScopes.begin(), allSmartScanScopes.end(),
                                    [&](SmartScanScope scope) { return rawValue(scope) == text; });
    return found == allSmartScanScopes.end() ? std::nullopt : std::optional(*found);
}

std::string_view title(SmartScanScope scope) noexcept {
    return textsOf(scope).title;
}

std::string_view explanation(SmartScanScope scope) noexcept {
    return textsOf(scope).explanation;
}

std::string_view symbol(SmartScanScope scope) noexcept {
    return textsOf(scope).symbol;
}

bool isRelevant(SmartScanScope scope, const FileURL& home) {
    constexpr std::array<std::string_view, 6> traces{
        "/Library/Developer", "/.npm",    "/Library/Caches/Homebrew",
        "/.docker",           "/.gradle", "/.cargo"};
    return scope != SmartScanScope::developer ||
           std::any_of(traces.begin(), traces.end(), [&](std::string_view trace) {
               return access((home.path() + std::string(trace)).c_str(), F_OK) == 0;
           });
}

} // namespace korvane
