#include "Korvane/collector/CollectorStore.h"
#include "Korvane/collector/CollectorText.h"
#include "Korvane/command/CommandContext.h"
#include "Korvane/command/Interrupt.h"
#include "Korvane/command/ItemsDocument.h"
#include "Korvane/command/JsonForms.h"
#include "Korvane/command/ProgressLine.h"
#include "Korvane/command/ReviewText.h"
#include "Korvane/command/Scanning.h"
#include "Korvane/command/Selection.h"
#include "Korvane/command/StandardInput.h"
#include "Korvane/command/Terminal.h"
#include "Korvane/tools/Confirmation.h"
#include "Korvane/tools/ToolCatalogue.h"
#include "KorvaneCore/cleaning/DeletionMode.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scan/ByteDisplay.h"

#include <fmt/format.h>

namespace korvane {

namespace {

struct CleanArguments {
    std::vector<std::string> words; ///< the tools, and behind them a folder or app
    ScanArguments scan;             ///< the options; the words are taken in one at a time
    std::string itemsFile;          ///< "-" for standard input
    std::string mode;               ///< empty: the user's preference
    std::string select = "preselected";
    std::vector<std::string> paths;
    bool yes = false;

    [[nodiscard]] bool hasItems() const { return !itemsFile.empty(); }
};

DeletionMode chosenMode(CommandContext& context, const CleanArguments& arguments) {
    if (arguments.mode.empty()) {
        return DeletionPreference::current(context.services.defaults());
    }
    return *deletionModeFromRawValue(arguments.mode);
}

void checkUsage(const CleanArguments& arguments) {
    if (arguments.hasItems() == !arguments.words.empty()) {
        throw UsageError("clean needs either a tool to scan with or --items FILE");
    }
    if (arguments.yes) {
        return;
    }
    if (!Terminal::isTerminal(stdin)) {
        throw UsageError("there is no terminal to ask on; add --yes to remove without a question");
    }
}

std::unique_ptr<ToolDriver> reviewOfItems(CommandContext& context,
                                          const CleanArguments& arguments) {
    std::string text;
    if (arguments.itemsFile == "-") {
        text = readStandardInput();
    } else {
        const FileURL file = context.location(arguments.itemsFile);
        auto content = readFile(file);
        if (!content) {
            throw CommandFailure(fmt::format("there is no file {}", displayText(file.path())));
        }
        text = std::move(*content);
    }
    try {
        ItemsDocument document = ItemsDocument::parse(text);
        auto driver = std::make_unique<ToolDriver>(document.result.scannerID, context.services);
        driver->show(std::move(document.result), std::move(document.preselected));
        return driver;
    } catch (const DecodingError& error) {
        throw CommandFailure(fmt::format("{} cannot be cleaned: {}; nothing was removed",
                                         displayText(arguments.itemsFile), error.what()));
    }
}

/// A scan for each tool that was named. The last word is what the tools look at when it is no tool.
std::vector<ScanArguments> scansToRun(const CleanArguments& arguments) {
    std::vector<std::string> tools = arguments.words;
    std::string subject;
    if (tools.size() > 1 && ToolCatalogue::tool(tools.back()) == nullptr) {
        subject = tools.back();
        tools.pop_back();
    }
    std::vector<ScanArguments> scans;
    for (const std::string& tool : tools) {
        ScanArguments& scan = scans.emplace_back(arguments.scan);
        scan.tool = tool;
        const Tool* known = ToolCatalogue::tool(tool);
        // Where several tools are named, only those that need something to look at take it.
        if (tools.size() == 1 || known == nullptr || known->needs != Tool::Needs::nothing) {
            scan.subject = subject;
        }
    }
    return scans;
}

std::unordered_set<UUID> selection(const CommandContext& context, const ReviewList& reviews,
                                   const CleanArguments& arguments) {
    SelectionArguments wanted;
    wanted.rule = arguments.select;
    for (const std::string& path : arguments.paths) {
        wanted.paths.push_back(context.location(path));
    }
    return selectedItems(reviews, wanted);
}

/// What a cleanup of nothing amounts to; no operation was run, so it has no id.
int reportNothing(const CommandContext& context, DeletionMode mode) {
    if (context.json) {
        CleanupResult nothing;
        nothing.mode = mode;
        Json document = toJson(nothing);
        document["operationID"] = nullptr;
        printJson(document);
    } else {
        Terminal::printLine("Nothing is selected, so nothing was removed.");
    }
    return exitDone;
}

bool confirmed(const CommandContext& context, const CleanArguments& arguments,
               const Confirmation& confirmation, const std::vector<ScanItem>& items) {
    if (arguments.yes) {
        return true;
    }
    // With --json, stdout belongs to the document.
    std::FILE* stream = context.json ? stderr : stdout;
    const std::string text =
        fmt::format("{}\n{}\n{}", selectionText(items, context.home()), confirmation.question,
                    Terminal::wrapped(confirmation.consequence, 0, Terminal::width(stream)));
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
    return answersYes(confirmation.actionTitle);
}

int report(const CommandContext& context, const CleanupResult& result) {
    if (context.json) {
        printJson(toJson(result));
    } else {
        Terminal::print(outcomeText(result, context.home(), Terminal::width(stdout)));
    }
    if (result.auditFailure) {
        Terminal::note(fmt::format("the removal could not be written to the audit log: {}",
                                   *result.auditFailure));
    }
    if (Interrupt::happened()) {
        return exitInterrupted;
    }
    return result.failed.empty() && !result.auditFailure ? exitDone : exitWrong;
}

/// Runs a removal with a progress line.
template <typename Work>
CleanupResult withProgress(const CommandContext& context, Work work) {
    ProgressLine line(!context.noProgress);
    return work([&](const CleanupProgress& progress) {
        const double share = progress.total == 0 ? 1.0
                                                 : static_cast<double>(progress.processed) /
                                                       static_cast<double>(progress.total);
        line.report(fmt::format("Cleaning… {} of {}, {}", progress.processed, progress.total,
                                ByteDisplay::formatAmount(progress.bytesReclaimed)),
                    share);
    });
}

/// What stands between the scans and the removal: nothing when it may begin, else how to end.
std::optional<int> reasonToStop(const CommandContext& context, const CleanArguments& arguments,
                                DeletionMode mode, const Confirmation& confirmation,
                                const std::vector<ScanItem>& items) {
    if (Interrupt::happened()) {
        Terminal::note("interrupted; nothing was removed");
        return exitInterrupted;
    }
    if (items.empty() && !arguments.hasItems()) {
        return reportNothing(context, mode);
    }
    if (!confirmed(context, arguments, confirmation, items)) {
        Terminal::note("nothing was removed");
        return Interrupt::happened() ? exitInterrupted : exitWrong;
    }
    return std::nullopt;
}

/// What several tools found goes through the Collector, as one operation.
int cleanTogether(CommandContext& context, const CleanArguments& arguments,
                  const std::vector<ScanArguments>& scans, DeletionMode mode) {
    std::vector<std::unique_ptr<ToolDriver>> drivers;
    ReviewList reviews;
    for (const ScanArguments& scan : scans) {
        drivers.push_back(runScan(context, scan));
        reviews.push_back(drivers.back()->review());
    }
    const auto selected = selection(context, reviews, arguments);
    CollectorStore collector;
    for (const auto& driver : drivers) {
        collector.stage(driver->items(selected));
    }
    const std::vector<ScanItem> items = collector.items();
    if (const auto status =
            reasonToStop(context, arguments, mode, makeCollectorConfirmation(mode, items), items)) {
        return *status;
    }
    return report(context, withProgress(context, [&](const CleanupProgressHandler& progress) {
                      return *collector.deleteAll(mode, context.services, progress);
                  }));
}

int clean(CommandContext& context, const CleanArguments& arguments) {
    checkUsage(arguments);
    const DeletionMode mode = chosenMode(context, arguments);
    const std::vector<ScanArguments> scans = scansToRun(arguments);
    if (scans.size() > 1) {
        return cleanTogether(context, arguments, scans, mode);
    }
    const auto driver =
        arguments.hasItems() ? reviewOfItems(context, arguments) : runScan(context, scans.front());
    const auto selected = selection(context, {driver->review()}, arguments);
    const std::vector<ScanItem> items = driver->items(selected);
    if (const auto status =
            reasonToStop(context, arguments, mode, makeConfirmation(mode, items), items)) {
        return *status;
    }
    return report(context, withProgress(context, [&](const CleanupProgressHandler& progress) {
                      return *driver->clean(selected, mode, progress);
                  }));
}

} // namespace

void addCleanCommand(CLI::App& app, CommandContext& context) {
    CLI::App* command =
        addLeaf(app, "clean", "Scan, show what will go, ask, and remove it", context);
    auto arguments = std::make_shared<CleanArguments>();
    command->add_option("TOOL", arguments->words,
                        "Tools of `korvane tools`, then the folder or app for those that need one");
    addScanOptions(*command, arguments->scan);
    command->add_option("--items", arguments->itemsFile,
                        "Clean the items of a scan saved with `scan --json` (\"-\": stdin)");
    command->add_option("--mode", arguments->mode, "trash or permanent (default: the preference)")
        ->check(CLI::IsMember({"trash", "permanent"}));
    command->add_option("--select", arguments->select, "preselected, all or none")
        ->check(CLI::IsMember({"preselected", "all", "none"}));
    command->add_option("--path", arguments->paths, "Also the item at this path (repeatable)")
        ->allow_extra_args(false);
    command->add_flag("--yes", arguments->yes, "Do not ask");
    command->callback([&context, arguments] {
        context.action = [&context, arguments] { return clean(context, *arguments); };
    });
}

} // namespace korvane
