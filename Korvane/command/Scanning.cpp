#include "Korvane/command/Scanning.h"

#include "Korvane/command/ProgressLine.h"
#include "Korvane/tools/ToolCatalogue.h"
#include "KorvaneCore/foundation/Text.h"

#include <fmt/format.h>

namespace korvane {

namespace {

const Tool& requireTool(const ScanArguments& arguments) {
    const Tool* tool = ToolCatalogue::tool(arguments.tool);
    if (tool == nullptr) {
        throw UsageError(fmt::format("there is no tool \"{}\"; `korvane tools` lists them",
                                     displayText(arguments.tool)));
    }
    if (tool->needs == Tool::Needs::nothing && !arguments.subject.empty()) {
        throw UsageError(fmt::format("{} takes no folder or app, but \"{}\" was given", tool->id,
                                     displayText(arguments.subject)));
    }
    if (tool->needs != Tool::Needs::nothing && arguments.subject.empty()) {
        throw UsageError(fmt::format("{} needs the {} to look at, for example `korvane scan {} {}`",
                                     tool->id, rawValue(tool->needs), tool->id,
                                     tool->needs == Tool::Needs::folder ? "~/Pictures" : "NAME"));
    }
    return *tool;
}

} // namespace

std::unique_ptr<ToolDriver> runScan(CommandContext& context, const ScanArguments& arguments) {
    const Tool& tool = requireTool(arguments);
    const auto scanner = ToolCatalogue::makeScanner(tool, {context.home()});
    auto driver = std::make_unique<ToolDriver>(scanner->id(), context.services);
    ProgressLine line(!context.noProgress);
    const bool scanned = driver->scan(*scanner, [&](const ScanProgress& progress) {
        line.report(progress.message, progress.fraction);
    });
    if (!scanned) {
        throw CommandFailure(driver->failure());
    }
    return driver;
}

} // namespace korvane
