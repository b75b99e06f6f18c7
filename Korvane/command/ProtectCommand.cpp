#include "Korvane/cleaning/PathProtection.h"
#include "Korvane/command/CommandContext.h"
#include "Korvane/command/JsonForms.h"
#include "Korvane/command/Terminal.h"
#include "KorvaneCore/foundation/Text.h"

#include <fmt/format.h>

namespace korvane {

namespace {

struct ProtectArguments {
    std::string path;
    std::string note;
    std::string id;
};

void printRecord(const Exclusion& exclusion) {
    Terminal::printLine(fmt::format(
        "{}  {}{}", exclusion.id.text(), displayText(exclusion.path),
        exclusion.note.empty() ? "" : fmt::format("  ({})", displayText(exclusion.note))));
}

int list(CommandContext& context) {
    const std::vector<Exclusion> items = context.services.exclusions().items();
    if (context.json) {
        Json array = Json::array();
        for (const Exclusion& exclusion : items) {
            array.push_back(toJson(exclusion));
        }
        printJson(array);
        return exitDone;
    }
    if (items.empty()) {
        Terminal::printLine("No paths are protected. `korvane protect add PATH` adds one.");
    }
    for (const Exclusion& exclusion : items) {
        printRecord(exclusion);
    }
    return exitDone;
}

int add(CommandContext& context, const ProtectArguments& arguments) {
    const ProtectionJudgement judgement = judgeProtection(arguments.path, context.home());
    if (judgement == ProtectionJudgement::empty) {
        throw UsageError("an empty path cannot be protected");
    }
    if (!isValidUTF8(arguments.note)) {
        throw UsageError("the note is not UTF-8 text");
    }
    Exclusion exclusion;
    exclusion.path = judgement == ProtectionJudgement::relative
                         ? context.location(arguments.path).path()
                         : arguments.path;
    exclusion.note = arguments.note;
    if (judgeProtection(exclusion.path, context.home()) == ProtectionJudgement::root) {
        throw CommandFailure("the filesystem root cannot be protected; name what is inside it");
    }
    context.services.exclusions().add(exclusion);
    if (context.json) {
        printJson(toJson(exclusion));
    } else {
        printRecord(exclusion);
    }
    return exitDone;
}

int removeRecord(CommandContext& context, const ProtectArguments& arguments) {
    const auto id = UUID::fromText(arguments.id);
    if (!id) {
        throw UsageError(fmt::format("\"{}\" is no id; `korvane protect list` shows them",
                                     displayText(arguments.id)));
    }
    if (!context.services.exclusions().remove(*id)) {
        throw CommandFailure(
            fmt::format("no protected path has the id {}; nothing was changed", id->text()));
    }
    if (context.json) {
        printJson({{"id", id->text()}});
    } else {
        Terminal::printLine(fmt::format("{} is no longer protected.", id->text()));
    }
    return exitDone;
}

} // namespace

void addProtectCommand(CLI::App& app, CommandContext& context) {
    CLI::App* group = addGroup(app, "protect", "Paths that must never be removed");
    auto arguments = std::make_shared<ProtectArguments>();
    addLeaf(*group, "list", "Show the protected paths", context)->callback([&context] {
        context.action = [&context] { return list(context); };
    });
    CLI::App* adding = addLeaf(*group, "add", "Protect a path and everything inside it", context);
    adding->add_option("PATH", arguments->path, "Kept as typed")->required();
    adding->add_option("--note", arguments->note, "Text shown beside it");
    adding->callback([&context, arguments] {
        context.action = [&context, arguments] { return add(context, *arguments); };
    });
    CLI::App* removing = addLeaf(*group, "remove", "Stop protecting a path", context);
    removing->add_option("ID", arguments->id, "An id of `korvane protect list`")->required();
    removing->callback([&context, arguments] {
        context.action = [&context, arguments] { return removeRecord(context, *arguments); };
    });
}

} // namespace korvane
