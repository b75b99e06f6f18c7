#include "Korvane/command/CommandLine.h"

#include "Korvane/command/CommandContext.h"
#include "Korvane/command/Interrupt.h"
#include "Korvane/command/Terminal.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Text.h"

#include <algorithm>
#include <optional>

#include <fmt/format.h>

namespace korvane {

namespace {

void build(CLI::App& app, CommandContext& context) {
    app.set_version_flag("--version", std::string("korvane " KORVANE_VERSION));
    app.require_subcommand(1);
    addToolsCommand(app, context);
    addScanCommand(app, context);
    addCleanCommand(app, context);
    addBinCommand(app, context);
    addCheckCommand(app, context);
    addProtectCommand(app, context);
    addRemovePrivilegedCommand(app, context);
    addRestoreCommand(app, context);
    addAuditCommand(app, context);
    addUsageCommand(app, context);
    addWalkCommands(app, context);
    addCatalogueCommand(app, context);
    addAccessCommand(app, context);
    addRulesCommand(app, context);
    addSettingsCommand(app, context);
    addUpdateCommand(app, context);
    addWindowCommand(app, context);
    addDemoCommand(app, context);
}

/// The command that was being read when the parser gave up: "korvane audit verify".
std::string commandName(const CLI::App& app) {
    std::string name = app.get_name();
    const auto chosen = app.get_subcommands();
    return chosen.empty() ? name : name + " " + commandName(*chosen.back());
}

int usageError(const std::string& sentence, const CLI::App& app) {
    Terminal::note(fmt::format("{}; see `{} --help`", sentence, commandName(app)));
    return exitUsage;
}

/// The first word that stands where a command should and is none. The parser itself would only say
/// that one is missing.
std::optional<std::string> unknownCommand(const CLI::App& root,
                                          const std::vector<std::string>& arguments) {
    const CLI::App* app = &root;
    for (const std::string& word : arguments) {
        const auto commands = app->get_subcommands([](const CLI::App*) { return true; });
        if (commands.empty() || word.starts_with('-')) {
            return std::nullopt;
        }
        const auto found =
            std::find_if(commands.begin(), commands.end(),
                         [&](const CLI::App* command) { return command->get_name() == word; });
        if (found == commands.end()) {
            return fmt::format("there is no command \"{}\"; see `{} --help`", displayText(word),
                               app == &root ? root.get_name()
                                            : root.get_name() + " " + app->get_name());
        }
        app = *found;
    }
    return std::nullopt;
}

/// The parser's complaint on one line.
std::string oneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    while (!text.empty() && (text.back() == ' ' || text.back() == '.')) {
        text.pop_back();
    }
    return displayText(text);
}

int runAction(const CommandContext& context, const CLI::App& app) {
    try {
        return context.action();
    } catch (const UsageError& error) {
        return usageError(error.what(), app);
    } catch (const std::exception& error) {
        Terminal::note(localizedDescription(error));
        return exitWrong;
    }
}

int finish(int status, CommandContext& context) {
    if (const auto warning = context.services.keyWarning()) {
        Terminal::note(*warning);
    }
    if (!Terminal::flushOutput()) {
        Terminal::note("the output could not be written");
        return exitWrong;
    }
    return Interrupt::happened() ? exitInterrupted : status;
}

} // namespace

int runCommandLine(const std::vector<std::string>& arguments, Services& services) {
    CommandContext context{services, false, false, {}};
    CLI::App app("Finds what can be removed safely, removes only what you confirm, and can put it "
                 "back.",
                 "korvane");
    build(app, context);
    if (const auto sentence = unknownCommand(app, arguments)) {
        Terminal::note(*sentence);
        return exitUsage;
    }
    try {
        // The parser takes the arguments from the back.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
            return app.exit(error); // help or version was asked for
        }
        return usageError(oneLine(error.what()), app);
    }
    return finish(runAction(context, app), context);
}

} // namespace korvane
