#pragma once

#include <optional>
#include <string_view>

namespace korvane {

/// How hard it is to get back what was removed.
enum class HeuristicRisk { low, medium, high };

[[nodiscard]] std::string_view rawValue(HeuristicRisk risk) noexcept;
[[nodiscard]] std::optional<HeuristicRisk> riskFromRawValue(std::string_view text) noexcept;
/// The sentence that explains it to the user.
[[nodiscard]] std::string_view explanation(HeuristicRisk risk) noexcept;

} // namespace korvane
