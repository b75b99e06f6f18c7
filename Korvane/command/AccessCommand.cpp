#include "Korvane/command/CommandContext.h"
#include "Korvane/command/Terminal.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scan/AccessProbe.h"

#include <fmt/format.h>

namespace korvane {

namespace {

int listProblems(const CommandContext& context) {
    const std::vector<AccessProblem> problems = probeAccess(context.home());
    if (context.json) {
        Json array = Json::array();
        for (const AccessProblem& problem : problems) {
            array.push_back({{"id", problem.id},
                             {"path", pathText(problem.url.path())},
                             {"error", problem.error}});
        }
        printJson(array);
        return exitDone;
    }
    if (problems.empty()) {
        Terminal::printLine("Every location of the catalogue that exists can be read.");
    }
    for (const AccessProblem& problem : problems) {
        Terminal::printLine(fmt::format("{}  {}: {}", Terminal::padRight(problem.id, 30),
                                        displayText(problem.url.path()), problem.error));
    }
    return exitDone;
}

} // namespace

void addAccessCommand(CLI::App& app, CommandContext& context) {
    CLI::App* command =
        addLeaf(app, "access", "List locations of the catalogue that cannot be read", context);
    command->callback(
        [&context] { context.action = [&context] { return listProblems(context); }; });
}

} // namespace korvane
