#include "Korvane/cleaning/BinEmptying.h"
#include "Korvane/command/CommandContext.h"
#include "Korvane/command/Interrupt.h"
#include "Korvane/command/JsonForms.h"
#include "Korvane/command/ReviewText.h"
#include "Korvane/command/StandardInput.h"
#include "Korvane/command/Terminal.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/platform/BinFolders.h"

#include <fmt/format.h>

namespace korvane {

namespace {

struct BinArguments {
    std::vector<std::string> folders;
    bool yes = false;
};

std::string binLines(const std::vector<ScanItem>& bins) {
    std::string text;
    for (const ScanItem& bin : bins) {
        text += fmt::format("{}  {}\n", Terminal::padLeft(bin.formattedSize(), 9),
                            displayText(bin.path()));
    }
    return text;
}

int listBins(const CommandContext& context) {
    const std::vector<ScanItem> bins = fullBins(context.services);
    if (context.json) {
        printJson(toJson(bins));
    } else if (bins.empty()) {
        Terminal::printLine("All Bins are empty.");
    } else {
        Terminal::print(binLines(bins));
    }
    return exitDone;
}

/// The folders named, or else all Bins, those too that hold nothing with a size. Measured as they
/// are now.
std::vector<ScanItem> binsToEmpty(const CommandContext& context, const BinArguments& arguments) {
    std::vector<FileURL> folders;
    for (const std::string& folder : arguments.folders) {
        folders.push_back(context.location(folder));
    }
    if (folders.empty()) {
        folders = binFolders(context.services.folders());
    }
    std::vector<ScanItem> bins;
    for (const FileURL& folder : folders) {
        bins.push_back(binItem(folder, context.services));
    }
    return bins;
}

bool confirmed(const CommandContext& context, const BinArguments& arguments,
               const std::vector<ScanItem>& bins) {
    if (arguments.yes) {
        return true;
    }
    const std::string text = binLines(bins) + emptyingWarning(bins) + "\n";
    std::FILE* stream = context.json ? stderr : stdout;
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
    return answersYes("Empty the Bin");
}

int report(const CommandContext& context, const BinEmptying& account) {
    const TrashEmptier::Outcome& outcome = account.outcome;
    if (context.json) {
        printJson({{"emptied", toJson(outcome.emptied)},
                   {"failures", toJson(outcome.failures)},
                   {"protectedFailures", toJson(outcome.protectedFailures)}});
    } else {
        const std::size_t columns = Terminal::width(stdout);
        Terminal::print(failuresText(outcome.protectedFailures, context.home(), columns));
        Terminal::print(failuresText(outcome.failures, context.home(), columns));
        Terminal::printLine(emptyingSummary(outcome));
    }
    if (account.auditFailure) {
        Terminal::note(fmt::format("the emptying could not be written to the audit log: {}",
                                   *account.auditFailure));
    }
    if (Interrupt::happened()) {
        return exitInterrupted;
    }
    const bool allWell = outcome.failures.empty() && outcome.protectedFailures.empty();
    return allWell && !account.auditFailure ? exitDone : exitWrong;
}

int emptyAll(CommandContext& context, const BinArguments& arguments) {
    if (!arguments.yes && !Terminal::isTerminal(stdin)) {
        throw UsageError("there is no terminal to ask on; add --yes to empty without a question");
    }
    const std::vector<ScanItem> bins = binsToEmpty(context, arguments);
    if (!bins.empty() && !confirmed(context, arguments, bins)) {
        Terminal::note("nothing was removed");
        return Interrupt::happened() ? exitInterrupted : exitDone;
    }
    return report(context, emptyBins(bins, context.services));
}

} // namespace

void addBinCommand(CLI::App& app, CommandContext& context) {
    CLI::App* group = addGroup(app, "bin", "The Bins of all disks");
    auto arguments = std::make_shared<BinArguments>();
    addLeaf(*group, "list", "Show what each Bin holds", context)->callback([&context] {
        context.action = [&context] { return listBins(context); };
    });
    CLI::App* emptying = addLeaf(
        *group, "empty", "Delete what is in the Bins, for good; protected paths stay", context);
    emptying->add_option("FOLDER", arguments->folders, "Bin folders (default: all of them)");
    emptying->add_flag("--yes", arguments->yes, "Do not ask");
    emptying->callback([&context, arguments] {
        context.action = [&context, arguments] { return emptyAll(context, *arguments); };
    });
}

} // namespace korvane
