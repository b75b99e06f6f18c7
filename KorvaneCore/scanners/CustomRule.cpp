#include "KorvaneCore/scanners/CustomRule.h"

#include "KorvaneCore/foundation/Text.h"

#include <fmt/format.h>

namespace korvane {

namespace {

/// Ages beyond this are a slip of the hand, and would not fit into a date.
constexpr std::int64_t longestAgeDays = 36500;

bool isPresent(const Json& object, std::string_view key) {
    const auto found = object.find(std::string(key));
    return found != object.end() && !found->is_null();
}

HeuristicRisk requireRisk(const Json& object) {
    if (const auto risk = riskFromRawValue(requireString(object, "risk"))) {
        return *risk;
    }
    throw DecodingError("\"risk\" must be low, medium or high");
}

} // namespace

Json CustomRule::toJson() const {
    return {{"id", id},
            {"name", name},
            {"path", pathText(path)},
            {"note", note},
            {"risk", rawValue(risk)},
            {"minimumAgeDays", minimumAgeDays},
            {"enumerateChildren", enumerateChildren}};
}

CustomRule CustomRule::fromJson(const Json& object) {
    CustomRule rule;
    rule.id = requireString(object, "id");
    rule.name = requireString(object, "name");
    rule.path = pathFromText(requireString(object, "path"));
    if (isPresent(object, "note")) {
        rule.note = requireString(object, "note");
    }
    if (isPresent(object, "risk")) {
        rule.risk = requireRisk(object);
    }
    if (isPresent(object, "minimumAgeDays")) {
        rule.minimumAgeDays = requireInteger(object, "minimumAgeDays");
    }
    if (isPresent(object, "enumerateChildren")) {
        rule.enumerateChildren = requireBoolean(object, "enumerateChildren");
    }
    rule.validate();
    return rule;
}

void CustomRule::validate() const {
    if (id.empty() || name.empty()) {
        throw DecodingError("\"id\" and \"name\" must not be empty");
    }
    if (!isValidUTF8(id) || !isValidUTF8(name) || !isValidUTF8(note)) {
        throw DecodingError("\"id\", \"name\" and \"note\" must be UTF-8 text");
    }
    if (!path.starts_with('/') && !path.starts_with("~/")) {
        throw DecodingError("\"path\" must begin with \"/\" or \"~/\"");
    }
    if (path.find('\0') != std::string::npos || FileURL(path).hasParentTraversal()) {
        throw DecodingError("\"path\" must not hold \"..\" or a NUL");
    }
    if (path.find("**") != std::string::npos) {
        throw DecodingError("\"**\" in \"path\" is not understood; \"*\" stands for one name");
    }
    if (minimumAgeDays < 0 || minimumAgeDays > longestAgeDays) {
        throw DecodingError(
            fmt::format("\"minimumAgeDays\" must lie between 0 and {}", longestAgeDays));
    }
}

std::string heuristicID(const CustomRule& rule) {
    return std::string(customRulePrefix) + rule.id;
}

} // namespace korvane
