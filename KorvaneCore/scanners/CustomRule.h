#pragma once

#include "KorvaneCore/foundation/Json.h"
#include "KorvaneCore/scan/HeuristicRisk.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace korvane {

/// One location that the user added to what may be proposed.
struct CustomRule {
    std::string id;   ///< the user's own name for it; unique
    std::string name; ///< shown as the category
    std::string path; ///< begins with "/" or "~/"; "*" stands for any text within one name
    std::string note; ///< why it is safe; may be empty
    HeuristicRisk risk = HeuristicRisk::medium;
    std::int64_t minimumAgeDays = 0; ///< propose only what was not changed for so long
    bool enumerateChildren = false;  ///< each thing directly in it is an item of its own

    [[nodiscard]] Json toJson() const;
    /// Only "id", "name" and "path" must be there. Throws DecodingError for what is missing, of the
    /// wrong type, or no rule that could be followed.
    [[nodiscard]] static CustomRule fromJson(const Json& object);

    /// Throws DecodingError with the reason why nobody could follow this rule.
    void validate() const;

    friend bool operator==(const CustomRule&, const CustomRule&) = default;
};

/// What the items of a rule carry as the row that justified them: this prefix, then the rule's id.
/// No row of the catalogue begins so.
inline constexpr std::string_view customRulePrefix = "custom-rules.";
[[nodiscard]] std::string heuristicID(const CustomRule& rule);

} // namespace korvane
