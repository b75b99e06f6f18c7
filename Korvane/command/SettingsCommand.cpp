#include "Korvane/command/CommandContext.h"
#include "Korvane/command/Terminal.h"
#include "KorvaneCore/cleaning/DeletionMode.h"
#include "KorvaneCore/foundation/Text.h"

#include <fmt/format.h>

namespace korvane {

namespace {

struct SettingsArguments {
    std::string key;
    std::string value;
};

constexpr std::string_view keyPrefix = "korvane.";

void requireKey(const std::string& key) {
    if (!key.starts_with(keyPrefix) || key.size() == keyPrefix.size() || !isValidUTF8(key)) {
        throw UsageError(fmt::format("\"{}\" is no setting; settings begin with \"korvane.\", for "
                                     "example {}",
                                     displayText(key), DeletionPreference::key));
    }
}

/// What is in force: for a setting with a default, that default where nothing is stored.
std::optional<std::string> effectiveValue(const UserDefaults& defaults, const std::string& key) {
    if (key == DeletionPreference::key) {
        return std::string(rawValue(DeletionPreference::current(defaults)));
    }
    return defaults.string(key);
}

int get(CommandContext& context, const SettingsArguments& arguments) {
    requireKey(arguments.key);
    const auto value = effectiveValue(context.services.defaults(), arguments.key);
    if (!value) {
        throw CommandFailure(fmt::format("{} is not set", displayText(arguments.key)));
    }
    if (context.json) {
        printJson({{"key", arguments.key}, {"value", *value}});
    } else {
        Terminal::printLine(displayText(*value));
    }
    return exitDone;
}

int set(CommandContext& context, const SettingsArguments& arguments) {
    requireKey(arguments.key);
    if (!isValidUTF8(arguments.value)) {
        throw UsageError("the value is not UTF-8 text");
    }
    if (arguments.key == DeletionPreference::key) {
        const auto mode = deletionModeFromRawValue(arguments.value);
        if (!mode) {
            throw UsageError(fmt::format("{} is \"trash\" or \"permanent\", not \"{}\"",
                                         arguments.key, displayText(arguments.value)));
        }
        DeletionPreference::setCurrent(context.services.defaults(), *mode);
    } else {
        context.services.defaults().set(arguments.key, arguments.value);
    }
    if (context.json) {
        printJson({{"key", arguments.key}, {"value", arguments.value}});
    }
    return exitDone;
}

} // namespace

void addSettingsCommand(CLI::App& app, CommandContext& context) {
    CLI::App* group = addGroup(app, "settings", "Read and change the preferences");
    auto arguments = std::make_shared<SettingsArguments>();
    CLI::App* getting = addLeaf(*group, "get", "Print a setting", context);
    getting->add_option("KEY", arguments->key, "For example korvane.deletionMode")->required();
    getting->callback([&context, arguments] {
        context.action = [&context, arguments] { return get(context, *arguments); };
    });
    CLI::App* setting = addLeaf(*group, "set", "Change a setting", context);
    setting->add_option("KEY", arguments->key, "For example korvane.deletionMode")->required();
    setting->add_option("VALUE", arguments->value, "For example trash")->required();
    setting->callback([&context, arguments] {
        context.action = [&context, arguments] { return set(context, *arguments); };
    });
}

} // namespace korvane
