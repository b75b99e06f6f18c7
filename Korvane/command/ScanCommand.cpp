#include "Korvane/command/CommandContext.h"
#include "Korvane/command/Interrupt.h"
#include "Korvane/command/JsonForms.h"
#include "Korvane/command/ReviewText.h"
#include "Korvane/command/Scanning.h"
#include "Korvane/command/Terminal.h"
#include "KorvaneCore/foundation/Task.h"

namespace korvane {

namespace {

int scan(CommandContext& context, const ScanArguments& arguments) {
    const auto driver = runScan(context, arguments);
    const auto review = driver->review();
    if (context.json) {
        printJson(toJson(*review));
    } else {
        Terminal::print(reviewText(*review, context.home(), Terminal::width(stdout)));
    }
    return Interrupt::happened() ? exitInterrupted : exitDone;
}

} // namespace

void addScanCommand(CLI::App& app, CommandContext& context) {
    CLI::App* command = addLeaf(app, "scan", "Find what can be removed; touches nothing", context);
    auto arguments = std::make_shared<ScanArguments>();
    addScanOptions(*command, *arguments);
    command->get_option("TOOL")->required();
    command->callback([&context, arguments] {
        context.action = [&context, arguments] { return scan(context, *arguments); };
    });
}

} // namespace korvane
