#include "Korvane/command/CommandContext.h"
#include "Korvane/command/Terminal.h"
#include "Korvane/tools/ToolCatalogue.h"

#include <fmt/format.h>

namespace korvane {

namespace {

int listTools(const CommandContext& context) {
    if (context.json) {
        Json array = Json::array();
        for (const Tool& tool : ToolCatalogue::all()) {
            array.push_back({{"id", tool.id},
                             {"displayName", tool.displayName},
                             {"needs", rawValue(tool.needs)}});
        }
        printJson(array);
        return exitDone;
    }
    for (const Tool& tool : ToolCatalogue::all()) {
        Terminal::printLine(fmt::format("{} {} needs {}", Terminal::padRight(tool.id, 18),
                                        Terminal::padRight(tool.displayName, 24),
                                        rawValue(tool.needs)));
    }
    return exitDone;
}

} // namespace

void addToolsCommand(CLI::App& app, CommandContext& context) {
    CLI::App* command = addLeaf(app, "tools", "List the tools that can scan", context);
    command->callback([&] { context.action = [&] { return listTools(context); }; });
}

} // namespace korvane
