#include "KorvaneCore/scanners/CustomRuleStore.h"

#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/foundation/Text.h"

#include <algorithm>

#include <fmt/format.h>

namespace korvane {

namespace {

bool contains(const std::vector<CustomRule>& rules, std::string_view id) {
    return std::any_of(rules.begin(), rules.end(),
                       [&](const CustomRule& rule) { return rule.id == id; });
}

CustomRule decode(const Json& object, std::size_t number) {
    try {
        return CustomRule::fromJson(object);
    } catch (const DecodingError& error) {
        throw DecodingError(fmt::format("rule {}: {}", number, error.what()));
    }
}

} // namespace

std::vector<CustomRule> CustomRuleStore::load() const {
    std::vector<CustomRule> rules;
    const auto content = readFile(file_);
    if (!content) {
        return rules;
    }
    try {
        const Json document = parseJson(*content);
        if (!document.is_array()) {
            throw DecodingError("an array of rules was expected");
        }
        for (const Json& object : document) {
            CustomRule rule = decode(object, rules.size() + 1);
            if (contains(rules, rule.id)) {
                throw DecodingError(fmt::format("rule {}: the id \"{}\" is there twice",
                                                rules.size() + 1, displayText(rule.id)));
            }
            rules.push_back(std::move(rule));
        }
    } catch (const DecodingError& error) {
        throw DecodingError(fmt::format("{}: {}", displayText(file_.path()), error.what()));
    }
    return rules;
}

std::vector<CustomRule> CustomRuleStore::add(std::span<const CustomRule> rules) const {
    const FileURL folder = file_.deletingLastPathComponent();
    createDirectories(folder);
    const FolderLock betweenProcesses(folder);
    std::vector<CustomRule> all = load();
    std::vector<CustomRule> added;
    for (const CustomRule& rule : rules) {
        rule.validate();
        if (!contains(all, rule.id)) {
            all.push_back(rule);
            added.push_back(rule);
        }
    }
    if (!added.empty()) {
        save(all);
    }
    return added;
}

bool CustomRuleStore::remove(std::string_view id) const {
    if (!contains(load(), id)) {
        return false; // nothing to change, so no folder is made either
    }
    const FolderLock betweenProcesses(file_.deletingLastPathComponent());
    std::vector<CustomRule> all = load();
    std::erase_if(all, [&](const CustomRule& rule) { return rule.id == id; });
    save(all);
    return true;
}

// Indented, because people read and edit this file.
void CustomRuleStore::save(const std::vector<CustomRule>& rules) const {
    Json array = Json::array();
    for (const CustomRule& rule : rules) {
        array.push_back(rule.toJson());
    }
    writeFileAtomically(file_, array.dump(2) + "\n");
}

} // namespace korvane
