#include "Korvane/command/CommandContext.h"
#include "Korvane/command/ProgressLine.h"
#include "Korvane/command/Terminal.h"
#include "Korvane/updater/AppUpdater.h"
#include "Korvane/updater/UpdateSentences.h"
#include "KorvaneCore/foundation/Text.h"

#include <memory>
#include <optional>

#include <fmt/format.h>

namespace korvane {

namespace {

using Kind = UpdatePhase::Kind;

struct UpdateArguments {
    std::string feed;
};

Json releaseJson(const UpdateRelease& release) {
    Json json = {{"version", release.version},
                 {"url", release.url},
                 {"sha256", release.sha256},
                 {"notes", release.notes}};
    if (release.minimumSystemVersion) {
        json["minimumSystemVersion"] = *release.minimumSystemVersion;
    }
    return json;
}

void showProgress(ProgressLine& line, const UpdatePhase& phase) {
    switch (phase.kind) {
    case Kind::checking:
        line.report(UpdateSentences::checking, std::nullopt);
        break;
    case Kind::downloading:
        line.report(UpdateSentences::downloading, phase.fraction);
        break;
    case Kind::verifying:
        line.report(UpdateSentences::verifying, std::nullopt);
        break;
    case Kind::installing:
        line.report(UpdateSentences::installing, std::nullopt);
        break;
    default:
        line.clear();
    }
}

/// What is said about the phase that it ended in; nothing where the phase says it all.
std::string messageOf(const UpdatePhase& phase, const std::string& version) {
    if (phase.kind == Kind::upToDate) {
        return UpdateSentences::upToDateTitle(version) + ". " +
               UpdateSentences::upToDateDetail(version);
    }
    return phase.kind == Kind::relaunching ? UpdateSentences::relaunching : phase.message;
}

void print(const UpdatePhase& phase, const std::string& version) {
    if (phase.kind == Kind::upToDate) {
        Terminal::printLine(UpdateSentences::upToDateTitle(version));
        Terminal::printLine(UpdateSentences::upToDateDetail(version));
    } else if (phase.kind == Kind::available) {
        Terminal::printLine(fmt::format("Korvane {} is available; you have {}.",
                                        phase.release->version, displayText(version)));
        for (const std::string& line : phase.release->notes) {
            Terminal::print(Terminal::wrapped(displayText(line), 2, Terminal::width(stdout)));
        }
        Terminal::printLine("`korvane update install` installs it and starts it.");
    } else if (phase.kind == Kind::needsManualInstall) {
        Terminal::print(Terminal::wrapped(phase.message, 0, Terminal::width(stdout)));
        Terminal::printLine(displayText(phase.location.path()));
    } else if (phase.kind == Kind::failed) {
        Terminal::note(displayText(phase.message));
    } else {
        Terminal::printLine(messageOf(phase, version));
    }
}

int run(const CommandContext& context, const UpdateArguments& arguments, bool installs) {
    UpdaterConfiguration configuration = UpdaterConfiguration::standard(context.services.folders());
    if (!arguments.feed.empty()) {
        const auto address = WebAddress::fromText(arguments.feed);
        if (!address || !address->isWithin(*address)) {
            throw UsageError("--feed takes an address that begins with https://");
        }
        configuration.feedURL = arguments.feed;
    }
    const std::string version = configuration.runningVersion;
    ProgressLine line(!context.noProgress && !context.json);
    AppUpdater updater(std::move(configuration),
                       [&](const UpdatePhase& phase) { showProgress(line, phase); });
    updater.check(true);
    if (installs && updater.phase().kind == Kind::available) {
        updater.install(*updater.phase().release);
    }
    line.clear();
    const UpdatePhase phase = updater.phase();
    if (context.json) {
        const std::string message = messageOf(phase, version);
        printJson(
            {{"phase", phaseName(phase.kind)},
             {"message", message.empty() ? Json() : Json(displayText(message))},
             {"release", phase.release ? releaseJson(*phase.release) : Json()},
             {"location",
              phase.location.path().empty() ? Json() : Json(pathText(phase.location.path()))}});
    } else {
        print(phase, version);
    }
    // An update that an administrator has to finish was asked for and is not there.
    return phase.kind == Kind::failed || phase.kind == Kind::needsManualInstall ? exitWrong
                                                                                : exitDone;
}

} // namespace

void addUpdateCommand(CLI::App& app, CommandContext& context) {
    CLI::App* group = addGroup(app, "update", "Look for a newer Korvane and install it");
    auto arguments = std::make_shared<UpdateArguments>();
    const auto add = [&](const char* name, const char* description, bool installs) {
        CLI::App* leaf = addLeaf(*group, name, description, context);
        leaf->add_option("--feed", arguments->feed, "The https address to ask instead");
        leaf->callback([&context, arguments, installs] {
            context.action = [&context, arguments, installs] {
                return run(context, *arguments, installs);
            };
        });
    };
    add("check", "Say whether there is a newer release", false);
    add("install", "Install the newest release and start it", true);
}

} // namespace korvane
