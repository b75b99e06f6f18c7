#include "KorvaneCore/scan/HeuristicRisk.h"

#include <array>

namespace korvane {

namespace {

struct RiskTexts {
    HeuristicRisk risk;
    std::string_view rawValue;
    std::string_view explanation;
};

constexpr std::array texts{
    RiskTexts{HeuristicRisk::low, "low",
              "Regenerates automatically when the app or system next needs it."},
    RiskTexts{HeuristicRisk::medium, "medium",
              "May need to be re-downloaded or reconfigured after removal."},
    RiskTexts{HeuristicRisk::high, "high",
              "Will not come back on its own - make sure you don't need it."}};

} // namespace

std::string_view rawValue(HeuristicRisk risk) noexcept {
    return texts[static_cast<std::size_t>(risk)].rawValue;
}

std::optional<HeuristicRisk> riskFromRawValue(std::string_view text) noexcept {
    for (const RiskTexts& row : texts) {
        if (row.rawValue == text) {
            return row.risk;
        }
    }
    return std::nullopt;
}

std::string_view explanation(HeuristicRisk risk) noexcept {
    return texts[static_cast<std::size_t>(risk)].explanation;
}

} // namespace korvane
