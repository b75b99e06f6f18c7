#include "Korvane/command/CommandContext.h"

#include "Korvane/command/ArgumentPath.h"
#include "Korvane/command/Terminal.h"

namespace korvane {

FileURL CommandContext::location(const std::string& argument) const {
    return argumentLocation(argument, services.home());
}

CLI::App* addLeaf(CLI::App& parent, const std::string& name, const std::string& description,
                  CommandContext& context) {
    CLI::App* leaf = parent.add_subcommand(name, description);
    leaf->add_flag("--json", context.json, "Print one JSON document");
    leaf->add_flag("--no-progress", context.noProgress, "Show no progress line");
    return leaf;
}

CLI::App* addGroup(CLI::App& parent, const std::string& name, const std::string& description) {
    CLI::App* group = parent.add_subcommand(name, description);
    group->require_subcommand(1);
    return group;
}

void printJson(const Json& document) {
    Terminal::printLine(document.dump(2));
}

} // namespace korvane
