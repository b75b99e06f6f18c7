#include "Korvane/command/CommandContext.h"
#include "Korvane/command/Interrupt.h"
#include "Korvane/command/ReviewJson.h"
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
        printReviewJson(*review);
    } else {
        Terminal::print(reviewText(*review, context.home(), Terminal::width(stdout)));
    }
    return Interrupt::happened() ? exitInterrupted : exitDone;
}

} // namespace

void addScanCommand(CLI::App& app, CommandContext& context) {
    CLI::App* command = addLeaf(app, "scan", "Find what can be removed; touches nothing", context);
    auto arguments = std::make_shared<ScanArguments>();
    command->add_option("TOOL", arguments->tool, "A tool of `korvane tools`")->required();
    command->add_option("SUBJECT", arguments->subject,
                        "The folder or app, for tools that need one");
    addScanOptions(*command, *arguments);
    command->callback([&context, arguments] {
        context.action = [&context, arguments] { return scan(context, *arguments); };
    });
}

} // namespace korvane
