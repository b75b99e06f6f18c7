#include "Korvane/audit/AuditQuery.h"
#include "Korvane/audit/IntegrityText.h"
#include "Korvane/audit/ModuleNames.h"
#include "Korvane/command/CommandContext.h"
#include "Korvane/command/JsonForms.h"
#include "Korvane/command/Terminal.h"
#include "KorvaneCore/cleaning/Restorer.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scan/ByteDisplay.h"

#include <fmt/format.h>

namespace korvane {

namespace {

struct AuditArguments {
    AuditQuery query;
    std::string reason;
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
                                            : "No matching operations");
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
