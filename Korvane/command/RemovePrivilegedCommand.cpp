#include "Korvane/cleaning/PrivilegedRemoval.h"
#include "Korvane/command/CommandContext.h"
#include "Korvane/command/Interrupt.h"
#include "Korvane/command/JsonForms.h"
#include "Korvane/command/StandardInput.h"
#include "Korvane/command/Terminal.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scan/ByteDisplay.h"

#include <fmt/format.h>

namespace korvane {

namespace {

struct RemovalArguments {
    std::vector<std::string> paths;
    bool yes = false;
};

/// An address of another kind is no relative path: it is handed on as it is, to be refused.
FileURL locationOf(const CommandContext& context, const std::string& argument) {
    const bool isAddress = argument.find("://") < argument.find('/');
    return isAddress && !FileURL::fromAbsoluteString(argument) ? FileURL(argument)
                                                               : context.location(argument);
}

std::string itemLines(const PrivilegedRequest& request) {
    std::string text;
    for (std::size_t i = 0; i < request.sizes.size(); ++i) {
        const auto& item = request.screening.accepted[i];
        text += fmt::format(
            "{}  {}{}\n", Terminal::padLeft(ByteDisplay::format(request.sizes[i]), 9),
            displayText(item.url.path()), item.place.exists() ? "" : " (nothing is there)");
    }
    return text;
}

bool confirmed(const CommandContext& context, const PrivilegedRequest& request) {
    const Confirmation confirmation = makeConfirmation(request, Elevation::standard());
    const std::string text = fmt::format("{}\n{}{}\n", confirmation.question, itemLines(request),
                                         confirmation.consequence);
    std::FILE* stream = context.json ? stderr : stdout;
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
    return answersYes("Remove permanently");
}

Json toJson(const PrivilegedRemover::Result& result) {
    Json refusals = Json::array();
    for (const PrivilegedRemover::Refusal& refusal : result.refusals) {
        const FileURL& url = refusal.url;
        refusals.push_back({{"url", url.isAbsolute() ? url.absoluteString() : pathText(url.path())},
                            {"kind", rawValue(refusal.kind)},
                            {"message", refusal.message}});
    }
    Json survivors = Json::array();
    for (const FileURL& url : result.survivors) {
        survivors.push_back(pathText(url.path()));
    }
    const auto sentence = notice(result);
    return {{"refusals", std::move(refusals)},
            {"survivors", std::move(survivors)},
            {"completed", result.completed},
            {"notice", sentence ? Json(*sentence) : Json(nullptr)}};
}

std::string outcomeText(const PrivilegedRemoval& removal) {
    const PrivilegedRemover::Result& result = removal.result;
    const std::size_t columns = Terminal::width(stdout);
    std::string text;
    for (const PrivilegedRemover::Refusal& refusal : result.refusals) {
        text += fmt::format("Not removed: {}\n{}", displayText(refusal.url.path()),
                            Terminal::wrapped(refusal.message, 2, columns));
    }
    if (const auto sentence = notice(result)) {
        text += Terminal::wrapped(*sentence, 0, columns);
    }
    for (const FileURL& url : result.survivors) {
        text += fmt::format("Still there: {}\n", displayText(url.path()));
    }
    if (!result.removed.empty()) {
        text += fmt::format("Removed {}, {}.\n", Terminal::counted(result.removed.size(), "item"),
                            ByteDisplay::formatAmount(removal.bytesReclaimed));
    }
    return text;
}

int report(const CommandContext& context, const PrivilegedRemoval& removal) {
    const PrivilegedRemover::Result& result = removal.result;
    if (context.json) {
        printJson(toJson(result));
    } else {
        Terminal::print(outcomeText(removal));
    }
    if (removal.auditFailure) {
        Terminal::note(fmt::format("the removal could not be written to the audit log: {}",
                                   *removal.auditFailure));
    }
    if (Interrupt::happened()) {
        return exitInterrupted;
    }
    const bool allGone = result.completed && result.refusals.empty() && result.survivors.empty();
    return allGone && !removal.auditFailure ? exitDone : exitWrong;
}

int removePrivileged(CommandContext& context, const RemovalArguments& arguments) {
    if (!arguments.yes && !Terminal::isTerminal(stdin)) {
        throw UsageError("there is no terminal to ask on; add --yes to remove without a question");
    }
    std::vector<FileURL> urls;
    urls.reserve(arguments.paths.size());
    for (const std::string& path : arguments.paths) {
        urls.push_back(locationOf(context, path));
    }
    PrivilegedRequest request = preparePrivilegedRemoval(urls, context.services);
    const bool asks = !arguments.yes && !request.screening.accepted.empty();
    if (asks && !confirmed(context, request)) {
        Terminal::note("nothing was removed");
        PrivilegedRemoval untouched;
        untouched.result.refusals = std::move(request.screening.refusals);
        for (const auto& item : request.screening.accepted) {
            untouched.result.survivors.push_back(item.url);
        }
        return report(context, untouched);
    }
    return report(context, removeWithPrivileges(std::move(request), context.services));
}

} // namespace

void addRemovePrivilegedCommand(CLI::App& app, CommandContext& context) {
    auto arguments = std::make_shared<RemovalArguments>();
    CLI::App* command = addLeaf(
        app, "remove-privileged",
        "Delete items for good with administrator rights; the system asks for them", context);
    command->add_option("PATH", arguments->paths, "Items to delete")->required();
    command->add_flag("--yes", arguments->yes, "Do not ask (the system still does)");
    command->callback([&context, arguments] {
        context.action = [&context, arguments] { return removePrivileged(context, *arguments); };
    });
}

} // namespace korvane
