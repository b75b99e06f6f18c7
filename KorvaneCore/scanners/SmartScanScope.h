#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <array>
#include <optional>
#include <string_view>

namespace korvane {

/// What a Smart Scan can look for, as the user chooses it.
enum class SmartScanScope { caches, browsers, oldFiles, developer, leftovers, systemFiles };

inline constexpr std::array allSmartScanScopes{
    SmartScanScope::caches,    SmartScanScope::browsers,  SmartScanScope::oldFiles,
    SmartScanScope::developer, SmartScanScope::leftovers, SmartScanScope::systemFiles};

/// Persisted; equal to the case's name.
[[nodiscard]] std::string_view rawValue(SmartScanScope scope) noexcept;
[[nodiscard]] std::optional<SmartScanScope>
smartScanScopeFromRawValue(std::string_view text) noexcept;

[[nodiscard]] std::string_view title(SmartScanScope scope) noexcept;
[[nodiscard]] std::string_view explanation(SmartScanScope scope) noexcept;
/// The name of the system symbol shown beside the title.
[[nodiscard]] std::string_view symbol(SmartScanScope scope) noexcept;

/// Whether there can be anything to find: false only for `developer` in a home folder without a
/// trace of development.
[[nodiscard]] bool isRelevant(SmartScanScope scope, const FileURL& home);

} // namespace korvane
