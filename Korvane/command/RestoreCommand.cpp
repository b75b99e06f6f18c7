#include "Korvane/cleaning/RestoreText.h"
#include "Korvane/command/CommandContext.h"
#include "Korvane/command/JsonForms.h"
#include "Korvane/command/Terminal.h"
#include "KorvaneCore/cleaning/Restorer.h"
#include "KorvaneCore/foundation/Text.h"

#include <fmt/format.h>

namespace korvane {

namespace {

struct RestoreArguments {
    std::vector<std::string> ids;
    bool all = false;
};

int listRestorable(const CommandContext& context, const std::vector<RestorableOp>& operations) {
    if (context.json) {
        Json array = Json::array();
        for (const RestorableOp& operation : operations) {
            array.push_back({{"operationID", operation.entry.operationID.text()},
                             {"timestamp", operation.entry.timestamp.iso8601()},
                             {"scannerID", operation.entry.scannerID},
                             {"restorableCount", operation.restorableCount}});
        }
        printJson(array);
        return exitDone;
    }
    if (operations.empty()) {
        Terminal::printLine(std::string(RestoreText::emptyTitle));
    }
    for (const RestorableOp& operation : operations) {
        Terminal::printLine(fmt::format("{}  {}  {}  {}", operation.entry.operationID.text(),
                                        operation.entry.timestamp.iso8601(),
                                        displayText(operation.entry.scannerID),
                                        RestoreText::canBeRestored(operation.restorableCount)));
    }
    return exitDone;
}

/// The items of the chosen operations, oldest operation first, so that of two items with one place
/// the one that left it first gets it back.
std::vector<RestorableItem> chosenItems(const std::vector<RestorableOp>& operations,
                                        const RestoreArguments& arguments) {
    std::vector<RestorableItem> items;
    std::unordered_set<UUID> wanted;
    for (const std::string& text : arguments.ids) {
        const auto id = UUID::fromText(text);
        if (!id) {
            throw UsageError(fmt::format("\"{}\" is no operation id; `korvane restore` lists them",
                                         displayText(text)));
        }
        const bool known =
            std::any_of(operations.begin(), operations.end(),
                        [&](const RestorableOp& one) { return one.entry.operationID == *id; });
        if (!known) {
            throw CommandFailure(
                fmt::format("nothing of operation {} is left to restore", id->text()));
        }
        wanted.insert(*id);
    }
    for (auto one = operations.rbegin(); one != operations.rend(); ++one) {
        if (arguments.all || wanted.contains(one->entry.operationID)) {
            items.insert(items.end(), one->entry.restorable->begin(), one->entry.restorable->end());
        }
    }
    return items;
}

int report(const CommandContext& context, const RestoreOutcome& outcome) {
    if (context.json) {
        Json restored = Json::array();
        for (const RestorableItem& item : outcome.restored) {
            restored.push_back(toJson(item));
        }
        Json failed = Json::array();
        for (const RestoreFailure& failure : outcome.failed) {
            failed.push_back({{"item", toJson(failure.item)}, {"error", failure.error}});
        }
        printJson({{"restored", std::move(restored)}, {"failed", std::move(failed)}});
    } else {
        for (const RestoreFailure& failure : outcome.failed) {
            Terminal::printLine(
                fmt::format("failed  {}: {}", displayText(failure.item.original), failure.error));
        }
        Terminal::printLine(RestoreText::outcome(outcome));
    }
    return outcome.failed.empty() ? exitDone : exitWrong;
}

int restore(CommandContext& context, const RestoreArguments& arguments) {
    if (arguments.all && !arguments.ids.empty()) {
        throw UsageError("give either operation ids or --all");
    }
    const Restorer restorer(context.services.auditLog(), context.services.fileManager());
    const std::vector<RestorableOp> operations = restorer.restorableOperations();
    if (!arguments.all && arguments.ids.empty()) {
        return listRestorable(context, operations);
    }
    std::vector<RestorableItem> items = chosenItems(operations, arguments);
    // What is gone from the Bin was restored or emptied before; asking for all means all that is.
    if (arguments.all) {
        std::erase_if(items,
                      [&](const RestorableItem& item) { return !restorer.isStillInBin(item); });
    }
    return report(context, restorer.restore(items));
}

} // namespace

void addRestoreCommand(CLI::App& app, CommandContext& context) {
    CLI::App* command = addLeaf(
        app, "restore", "Put items back from the Bin; alone, lists what can be put back", context);
    auto arguments = std::make_shared<RestoreArguments>();
    command->add_option("OPERATION-ID", arguments->ids, "Operations to undo");
    command->add_flag("--all", arguments->all, "Everything that is still in the Bin");
    command->callback([&context, arguments] {
        context.action = [&context, arguments] { return restore(context, *arguments); };
    });
}

} // namespace korvane
