#include "Korvane/audit/AuditExport.h"
#include "Korvane/audit/AuditQuery.h"
#include "Korvane/audit/AuditReview.h"
#include "Korvane/audit/AuditText.h"
#include "Korvane/audit/IntegrityText.h"
#include "Korvane/audit/ModuleNames.h"
#include "Korvane/command/CommandContext.h"
#include "Korvane/command/JsonForms.h"
#include "Korvane/command/Terminal.h"
#include "KorvaneCore/cleaning/Restorer.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scan/ByteDisplay.h"

#include <algorithm>

#include <fmt/format.h>

namespace korvane {

namespace {

struct AuditArguments {
    AuditQuery query;
    std::string reason;
    std::string file;
    std::string period = "daily";
};

std::string summary(const AuditEntry& entry) {
    if (entry.chainRestart) {
        return fmt::format("acknowledged break at {}: {}",
                           entry.chainRestart->acknowledgedOperationID.text(),
                           displayText(entry.chainRestart->reason));
    }
    const std::string module =
        Terminal::styled(displayText(moduleName(entry.scannerID)), Terminal::Style::bold);
    if (entry.scannerID == Restorer::scannerID) {
        return fmt::format("{}  {} put back", module, entry.succeededCount);
    }
    return fmt::format("{}  {} of {} removed, {}", module, entry.succeededCount, entry.itemCount,
                       ByteDisplay::formatAmount(entry.bytesReclaimed));
}

std::string entryText(const AuditEntry& entry) {
    std::string text = fmt::format("{}  {}\n    {}\n", entry.timestamp.iso8601(), summary(entry),
                                   entry.operationID.text());
    for (const std::string& path : entry.paths) {
        text += fmt::format("    {}\n", displayText(path));
    }
    return text;
}

int list(CommandContext& context, const AuditQuery& query) {
    const std::vector<AuditEntry> entries =
        matchingEntries(context.services.auditLog().entries(), query);
    if (context.json) {
        Json array = Json::array();
        for (const AuditEntry& entry : entries) {
            array.push_back(entry.toJson());
        }
        printJson(array);
        return exitDone;
    }
    if (entries.empty()) {
        Terminal::printLine(query.isEmpty() ? "No cleanup operations have been logged yet."
                                            : std::string(AuditText::noMatchTitle));
    }
    for (const AuditEntry& entry : entries) {
        Terminal::print(entryText(entry));
    }
    return exitDone;
}

int verify(CommandContext& context) {
    const AuditChainResult result = context.services.auditLog().verifyChain();
    const std::string sentence = integrityMessage(result);
    if (context.json) {
        const auto& broken = result.firstBrokenOperationID;
        printJson({{"coverage", rawValue(result.coverage)},
                   {"checkedCount", result.checkedCount},
                   {"firstBrokenOperationID", broken ? Json(broken->text()) : Json(nullptr)},
                   {"recordedRestarts", result.recordedRestarts},
                   {"message", sentence}});
    } else {
        Terminal::print(Terminal::wrapped(sentence, 0, Terminal::width(stdout)));
        if (result.firstBrokenOperationID) {
            Terminal::printLine(fmt::format("The chain fails at operation {}.",
                                            result.firstBrokenOperationID->text()));
        }
    }
    return result.coverage == AuditChainResult::Coverage::broken ? exitWrong : exitDone;
}

int acknowledge(CommandContext& context, const std::string& reason) {
    if (reason.empty() || !isValidUTF8(reason)) {
        throw UsageError("the reason must be some text in UTF-8");
    }
    AuditLog& log = context.services.auditLog();
    const AuditChainResult result = log.verifyChain();
    if (!result.firstBrokenOperationID) {
        throw CommandFailure("the log is not broken, so there is nothing to acknowledge");
    }
    const AuditEntry entry = log.recordChainRestart(reason, *result.firstBrokenOperationID);
    if (context.json) {
        printJson(entry.toJson());
    } else {
        Terminal::print(entryText(entry));
    }
    return exitDone;
}

int exportEntries(const CommandContext& context, const AuditArguments& arguments) {
    const FileURL file = context.location(arguments.file);
    const std::vector<AuditEntry> entries =
        matchingEntries(context.services.auditLog().entries(), arguments.query);
    exportAuditLog(entries, file);
    if (context.json) {
        printJson({{"file", pathText(file.path())}, {"operations", entries.size()}});
    } else {
        Terminal::printLine(AuditText::exported(entries.size(), displayText(file.path())));
    }
    return exitDone;
}

std::string chartText(const std::vector<ChartBar>& bars) {
    constexpr std::size_t barColumns = 48;
    std::int64_t most = 0;
    for (const ChartBar& bar : bars) {
        most = std::max(most, bar.bytes);
    }
    if (most == 0) {
        return fmt::format("{}\n", AuditText::emptyPeriod);
    }
    std::string text;
    for (const ChartBar& bar : bars) {
        const double share = static_cast<double>(bar.bytes) / static_cast<double>(most);
        const auto columns =
            static_cast<std::size_t>(share * static_cast<double>(barColumns) + 0.5);
        text += fmt::format("  {}  {}  {}\n", Terminal::padLeft(bar.label, 6),
                            Terminal::padRight(std::string(columns, '#'), barColumns),
                            bar.bytes == 0 ? "" : ByteDisplay::format(bar.bytes));
    }
    return text;
}

int showStatistics(const CommandContext& context, const AuditArguments& arguments) {
    AuditLog& log = context.services.auditLog();
    const std::vector<AuditEntry> entries = log.entries();
    const AuditStatistics statistics = auditStatistics(entries, log.verifyChain());
    const ChartPeriod period = arguments.period == rawValue(ChartPeriod::weekly)
                                   ? ChartPeriod::weekly
                                   : ChartPeriod::daily;
    const std::vector<ChartBar> bars = chartBars(entries, period, Date::now());
    if (context.json) {
        Json array = Json::array();
        for (const ChartBar& bar : bars) {
            array.push_back({{"label", bar.label}, {"bytes", bar.bytes}});
        }
        printJson({{"operations", statistics.operations},
                   {"lifetimeReclaimed", statistics.lifetimeReclaimed},
                   {"status", statistics.status},
                   {"bars", std::move(array)}});
        return exitDone;
    }
    Terminal::printLine(fmt::format("{}  {}\n{}   {}\n{}\n", AuditText::operationsRecorded,
                                    statistics.operations, AuditText::lifetimeReclaimed,
                                    ByteDisplay::format(statistics.lifetimeReclaimed),
                                    statistics.status));
    Terminal::printLine(Terminal::styled(label(period), Terminal::Style::bold));
    Terminal::print(chartText(bars));
    return exitDone;
}

int showFolder(const CommandContext& context) {
    const std::string folder = context.services.auditLog().rootURL().path();
    if (context.json) {
        printJson({{"folder", pathText(folder)}});
    } else {
        // As it is, so that a script can use it.
        Terminal::printLine(folder);
    }
    return exitDone;
}

} // namespace

void addAuditCommand(CLI::App& app, CommandContext& context) {
    CLI::App* group = addGroup(app, "audit", "The log of everything removed and restored");
    auto arguments = std::make_shared<AuditArguments>();

    CLI::App* listing = addLeaf(*group, "list", "Show the operations, newest first", context);
    listing->add_option("--query", arguments->query.text, "Only with this in a path or module");
    listing->add_option("--module", arguments->query.module, "Only of this scanner id");
    listing->callback([&context, arguments] {
        context.action = [&context, arguments] { return list(context, arguments->query); };
    });

    CLI::App* exporting = addLeaf(
        *group, "export",
        "Save the operations as CSV, or as JSON when FILE ends in .json. Paths are data: should a "
        "spreadsheet offer to run what a path holds, refuse",
        context);
    exporting->add_option("FILE", arguments->file, "Replaced when it is there")->required();
    exporting->add_option("--query", arguments->query.text, "Only with this in a path or module");
    exporting->add_option("--module", arguments->query.module, "Only of this scanner id");
    exporting->callback([&context, arguments] {
        context.action = [&context, arguments] { return exportEntries(context, *arguments); };
    });

    CLI::App* statistics =
        addLeaf(*group, "statistics", "What was reclaimed, by day or week", context);
    statistics->add_option("--period", arguments->period, "daily (30 days) or weekly (12 weeks)")
        ->check(CLI::IsMember({"daily", "weekly"}));
    statistics->callback([&context, arguments] {
        context.action = [&context, arguments] { return showStatistics(context, *arguments); };
    });

    CLI::App* verifying = addLeaf(*group, "verify", "Check the hash chain", context);
    verifying->callback([&context] { context.action = [&context] { return verify(context); }; });

    CLI::App* acknowledging =
        addLeaf(*group, "acknowledge", "Record why the chain is broken at one entry", context);
    acknowledging->add_option("--reason", arguments->reason, "What happened")->required();
    acknowledging->callback([&context, arguments] {
        context.action = [&context, arguments] { return acknowledge(context, arguments->reason); };
    });

    CLI::App* folder = addLeaf(*group, "folder", "Print the folder of the log files", context);
    folder->callback([&context] { context.action = [&context] { return showFolder(context); }; });
}

} // namespace korvane
