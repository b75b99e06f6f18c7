#include "Korvane/command/CommandContext.h"
#include "Korvane/command/Terminal.h"
#include "KorvaneCore/cleaning/SafetyGuard.h"
#include "KorvaneCore/foundation/Text.h"

#include <fmt/format.h>

namespace korvane {

namespace {

struct Judgement {
    std::optional<ExclusionMatch> exclusion;
    SafetyGuard::Decision guard = SafetyGuard::Decision::allowed();

    [[nodiscard]] bool removable() const { return !exclusion && guard.isAllowed(); }
};

Json toJson(const FileURL& url, const Judgement& judgement) {
    Json exclusion = nullptr;
    if (judgement.exclusion) {
        exclusion = {{"case", rawValue(judgement.exclusion->match)},
                     {"root", pathText(judgement.exclusion->root)},
                     {"message", judgement.exclusion->message()}};
    }
    const auto reason = judgement.guard.reason();
    return {{"path", pathText(url.path())},
            {"exclusion", std::move(exclusion)},
            {"guard",
             {{"decision", reason ? "blocked" : "allowed"},
              {"reason", reason ? Json(rawValue(*reason)) : Json(nullptr)},
              {"message", reason ? Json(message(*reason)) : Json(nullptr)}}}};
}

std::string sentence(const FileURL& url, const Judgement& judgement) {
    std::string verdict = "could be removed";
    if (judgement.exclusion) {
        verdict = judgement.exclusion->message();
    } else if (const auto reason = judgement.guard.reason()) {
        verdict = message(*reason);
    }
    return fmt::format("{}: {}", displayText(url.path()), verdict);
}

int check(CommandContext& context, const std::vector<std::string>& paths) {
    const SafetyGuard guard(context.home());
    Json array = Json::array();
    bool all = true;
    for (const std::string& path : paths) {
        const FileURL url = context.location(path);
        const Judgement judgement{context.services.exclusions().match(url), guard.evaluate(url)};
        all = all && judgement.removable();
        if (context.json) {
            array.push_back(toJson(url, judgement));
        } else {
            Terminal::printLine(sentence(url, judgement));
        }
    }
    if (context.json) {
        printJson(array);
    }
    return all ? exitDone : exitWrong;
}

} // namespace

void addCheckCommand(CLI::App& app, CommandContext& context) {
    CLI::App* command =
        addLeaf(app, "check", "Would Korvane ever remove this? Touches nothing", context);
    auto paths = std::make_shared<std::vector<std::string>>();
    command->add_option("PATH", *paths, "Paths to judge as typed")->required();
    command->callback([&context, paths] {
        context.action = [&context, paths] { return check(context, *paths); };
    });
}

} // namespace korvane
