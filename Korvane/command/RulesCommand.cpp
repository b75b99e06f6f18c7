#include "Korvane/command/CommandContext.h"
#include "Korvane/command/Terminal.h"
#include "Korvane/tools/NewCustomRule.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scanners/LinuxRulePreset.h"

#include <fmt/format.h>

namespace korvane {

namespace {

struct RulesArguments {
    CustomRule rule;
    std::string risk = "medium";
    std::string id;
    std::string preset;
};

Json toJson(const std::vector<CustomRule>& rules) {
    Json array = Json::array();
    for (const CustomRule& rule : rules) {
        array.push_back(rule.toJson());
    }
    return array;
}

void printRules(const std::vector<CustomRule>& rules) {
    const std::size_t columns = Terminal::width(stdout);
    for (const CustomRule& rule : rules) {
        std::string path = displayText(rule.path);
        if (rule.enumerateChildren) {
            path += ", each item in it";
        }
        if (rule.minimumAgeDays > 0) {
            path += fmt::format(
                ", unchanged for {}",
                Terminal::counted(static_cast<std::size_t>(rule.minimumAgeDays), "day"));
        }
        Terminal::printLine(fmt::format("{}  {}  {}\n  {}", displayText(rule.id),
                                        rawValue(rule.risk), displayText(rule.name), path));
        if (!rule.note.empty()) {
            Terminal::print(Terminal::wrapped(displayText(rule.note), 2, columns));
        }
    }
}

int list(CommandContext& context) {
    const std::vector<CustomRule> rules = context.services.customRules().load();
    if (context.json) {
        printJson(toJson(rules));
    } else if (rules.empty()) {
        Terminal::printLine("There are no rules of your own. `korvane rules preset linux` adds a "
                            "set for this system.");
    } else {
        printRules(rules);
    }
    return exitDone;
}

int add(CommandContext& context, const RulesArguments& arguments) {
    CustomRule rule = arguments.rule;
    if (rule.path != "~" && !rule.path.starts_with('/') && !rule.path.starts_with("~/")) {
        rule.path = context.location(rule.path).path();
    }
    rule.risk = riskFromRawValue(arguments.risk).value_or(rule.risk);
    try {
        rule = newCustomRule(std::move(rule));
    } catch (const DecodingError& error) {
        throw UsageError(error.what());
    }
    if (context.services.customRules().add({&rule, 1}).empty()) {
        throw CommandFailure(fmt::format("there is a rule with the id \"{}\" already; nothing was "
                                         "changed",
                                         displayText(rule.id)));
    }
    if (context.json) {
        printJson(rule.toJson());
    } else {
        printRules({rule});
    }
    return exitDone;
}

int removeRule(CommandContext& context, const RulesArguments& arguments) {
    if (!context.services.customRules().remove(arguments.id)) {
        throw CommandFailure(fmt::format("there is no rule with the id \"{}\"; nothing was changed",
                                         displayText(arguments.id)));
    }
    if (context.json) {
        printJson({{"id", arguments.id}});
    } else {
        Terminal::printLine(fmt::format("The rule {} is gone.", displayText(arguments.id)));
    }
    return exitDone;
}

int takePreset(CommandContext& context) {
    const std::vector<CustomRule> added = context.services.customRules().add(linuxRulePreset());
    if (context.json) {
        printJson(toJson(added));
    } else {
        Terminal::printLine(
            fmt::format("{} added to {}. `korvane scan custom-rules` looks for what they name.",
                        Terminal::counted(added.size(), "rule"),
                        displayText(context.services.customRules().file().path())));
    }
    return exitDone;
}

} // namespace

void addRulesCommand(CLI::App& app, CommandContext& context) {
    CLI::App* group = addGroup(app, "rules", "Places of your own choice to look at");
    auto arguments = std::make_shared<RulesArguments>();
    addLeaf(*group, "list", "Show your rules", context)->callback([&context] {
        context.action = [&context] { return list(context); };
    });

    CLI::App* adding = addLeaf(*group, "add", "Add a rule", context);
    adding
        ->add_option("PATH", arguments->rule.path,
                     "Kept as typed; \"*\" stands for any text within one name")
        ->required();
    adding->add_option("--id", arguments->rule.id, "What the rule goes by (default: a new UUID)");
    adding->add_option("--name", arguments->rule.name, "The category of what it finds");
    adding->add_option("--note", arguments->rule.note, "Why it is safe to remove");
    adding->add_option("--risk", arguments->risk, "low, medium or high (default: medium)")
        ->check(CLI::IsMember({"low", "medium", "high"}));
    adding
        ->add_option("--minimum-age-days", arguments->rule.minimumAgeDays,
                     "Only what was not changed for so many days")
        ->check(CLI::NonNegativeNumber);
    adding->add_flag("--enumerate-children", arguments->rule.enumerateChildren,
                     "Each thing directly in the folder is an item of its own");
    adding->callback([&context, arguments] {
        context.action = [&context, arguments] { return add(context, *arguments); };
    });

    CLI::App* removing = addLeaf(*group, "remove", "Drop a rule; removes no files", context);
    removing->add_option("ID", arguments->id, "An id of `korvane rules list`")->required();
    removing->callback([&context, arguments] {
        context.action = [&context, arguments] { return removeRule(context, *arguments); };
    });

    CLI::App* preset = addLeaf(*group, "preset", "Add a ready set of rules", context);
    preset->add_option("NAME", arguments->preset, "linux")
        ->required()
        ->check(CLI::IsMember({"linux"}));
    preset->callback([&context] { context.action = [&context] { return takePreset(context); }; });
}

} // namespace korvane
