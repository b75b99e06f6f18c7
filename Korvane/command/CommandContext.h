#pragma once

#include "Korvane/tools/Services.h"
#include "KorvaneCore/foundation/Json.h"

#include <functional>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>

namespace korvane {

/// What the process ends with.
enum ExitStatus : int { exitDone = 0, exitWrong = 1, exitUsage = 2, exitInterrupted = 130 };

/// The user asked for something that cannot be meant; what() is the one line to show.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Something that was asked for is not there or went wrong; what() is the one line to show.
class CommandFailure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// What every command shares. The parser fills it in, the chosen command runs as `action`.
struct CommandContext {
    Services& services;
    bool json = false;
    bool noProgress = false;
    std::function<int()> action; ///< answers the exit status

    [[nodiscard]] const FileURL& home() const { return services.home(); }
    [[nodiscard]] FileURL location(const std::string& argument) const;
};

/// A command without commands of its own: takes the options that all have.
CLI::App* addLeaf(CLI::App& parent, const std::string& name, const std::string& description,
                  CommandContext& context);
/// A command that only holds others.
CLI::App* addGroup(CLI::App& parent, const std::string& name, const std::string& description);

/// One JSON document on stdout.
void printJson(const Json& document);

void addToolsCommand(CLI::App& app, CommandContext& context);
void addScanCommand(CLI::App& app, CommandContext& context);
void addCleanCommand(CLI::App& app, CommandContext& context);
void addBinCommand(CLI::App& app, CommandContext& context);
void addCheckCommand(CLI::App& app, CommandContext& context);
void addRemovePrivilegedCommand(CLI::App& app, CommandContext& context);
void addProtectCommand(CLI::App& app, CommandContext& context);
void addRestoreCommand(CLI::App& app, CommandContext& context);
void addAuditCommand(CLI::App& app, CommandContext& context);
void addUsageCommand(CLI::App& app, CommandContext& context);
void addWalkCommands(CLI::App& app, CommandContext& context);
void addCatalogueCommand(CLI::App& app, CommandContext& context);
void addAccessCommand(CLI::App& app, CommandContext& context);
void addRulesCommand(CLI::App& app, CommandContext& context);
void addSettingsCommand(CLI::App& app, CommandContext& context);
void addUpdateCommand(CLI::App& app, CommandContext& context);
void addWindowCommand(CLI::App& app, CommandContext& context);
void addDemoCommand(CLI::App& app, CommandContext& context);

} // namespace korvane
