#include "Korvane/command/CommandContext.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/platform/RunningSystem.h"

#include <cerrno>
#include <memory>
#include <vector>

#include <unistd.h>

#include <fmt/format.h>

namespace korvane {

namespace {

/// The window is a program of its own beside this one, so that the command loads nothing of it.
/// Throws when it cannot be started.
[[noreturn]] void becomeWindow(const std::string& screen) {
    std::string program =
        runningExecutable().deletingLastPathComponent().appending("korvane-app").path();
    std::vector<std::string> words = {program};
    if (!screen.empty()) {
        words.emplace_back("--page");
        words.push_back(screen);
    }
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    execv(program.c_str(), arguments.data());
    const int error = errno;
    if (error == ENOENT) {
        throw CommandFailure("the window is not installed here; everything it does, the command "
                             "does too");
    }
    throw CommandFailure(
        fmt::format("{} could not be started: {}", displayText(program), errorText(error)));
}

} // namespace

void addWindowCommand(CLI::App& app, CommandContext& context) {
    CLI::App* command = addLeaf(app, "window", "Open the window", context);
    auto screen = std::make_shared<std::string>();
    command->add_option("screen", *screen,
                        "The tool or screen to open, like smart-scan, restore or audit");
    command->callback(
        [&context, screen] { context.action = [screen]() -> int { becomeWindow(*screen); }; });
}

} // namespace korvane
