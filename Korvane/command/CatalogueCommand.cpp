#include "Korvane/command/CommandContext.h"
#include "Korvane/command/JsonForms.h"
#include "Korvane/command/Terminal.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scan/PathHeuristics.h"

#include <fmt/format.h>

namespace korvane {

namespace {

struct CatalogueArguments {
    std::string id;
    std::string scanner;
};

std::vector<const PathHeuristic*> chosenRows(const CatalogueArguments& arguments) {
    std::vector<const PathHeuristic*> rows;
    for (const PathHeuristic* row : PathHeuristics::all()) {
        if ((arguments.id.empty() || row->id == arguments.id) &&
            (arguments.scanner.empty() || row->scannerID == arguments.scanner)) {
            rows.push_back(row);
        }
    }
    if (!rows.empty()) {
        return rows;
    }
    throw CommandFailure(
        arguments.id.empty()
            ? fmt::format("no row of the catalogue belongs to a scanner \"{}\"",
                          displayText(arguments.scanner))
            : fmt::format("the catalogue has no row \"{}\"", displayText(arguments.id)));
}

std::string rowText(const PathHeuristic& row, std::size_t columns) {
    return fmt::format(
        "{}  {}\n  {} · {}\n  {}\n{}{}\n", Terminal::styled(row.id, Terminal::Style::bold),
        row.displayName, row.category, row.scannerID, row.pathPattern,
        Terminal::wrapped(row.whySafe, 2, columns),
        Terminal::wrapped(fmt::format("Risk: {}. {}", rawValue(row.risk), row.riskExplanation()), 2,
                          columns));
}

int show(const CommandContext& context, const CatalogueArguments& arguments) {
    const auto rows = chosenRows(arguments);
    if (context.json) {
        Json array = Json::array();
        for (const PathHeuristic* row : rows) {
            array.push_back(toJson(*row, context.home()));
        }
        printJson(array);
        return exitDone;
    }
    for (const PathHeuristic* row : rows) {
        Terminal::print(rowText(*row, Terminal::width(stdout)));
    }
    return exitDone;
}

} // namespace

void addCatalogueCommand(CLI::App& app, CommandContext& context) {
    CLI::App* command =
        addLeaf(app, "catalogue", "Every location that may ever be proposed, and why", context);
    auto arguments = std::make_shared<CatalogueArguments>();
    command->add_option("ID", arguments->id, "Only this row");
    command->add_option("--scanner", arguments->scanner, "Only rows of this scanner");
    command->callback([&context, arguments] {
        context.action = [&context, arguments] { return show(context, *arguments); };
    });
}

} // namespace korvane
