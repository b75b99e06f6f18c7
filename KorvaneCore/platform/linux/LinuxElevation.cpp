#include "KorvaneCore/platform/linux/LinuxElevation.h"

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/Task.h"

#include <fcntl.h>
#include <unistd.h>

#include <fmt/format.h>

namespace korvane {

namespace {

constexpr const char* shell = "/bin/sh";
constexpr std::string_view readyLine = "ready\n";

// Only one more program will do: polkit answered that nobody can be asked through it. A user who
// was asked and said no is not asked a second time.
bool nobodyToAsk(const ProcessOutcome& outcome) {
    constexpr int notAuthorized = 127;
    return !outcome.launched ||
           (outcome.exitStatus == notAuthorized &&
            (outcome.errors.find("Error getting authority") != std::string::npos ||
             outcome.errors.find("No authentication agent found") != std::string::npos));
}

} // namespace

struct LinuxElevation::Attempt {
    bool hadRights = false; ///< the shell ran, whatever the last look said
    bool completed = false;
    ProcessOutcome outcome;
};

LinuxElevation::Means LinuxElevation::currentMeans() {
    Means means;
    means.isRoot = geteuid() == 0;
    means.hasTerminal =
        static_cast<bool>(FileDescriptor(open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC)));
    return means;
}

bool LinuxElevation::run(const std::string& shellCommand, const LastLook& lastLook) {
    const Means means = means_();
    if (means.isRoot) {
        return attempt({}, shellCommand, lastLook).completed;
    }
    std::vector<std::string> polkit{means.polkit};
    if (means.hasTerminal) {
        // Its own way of asking on a terminal is refused by the very service it asks for; sudo does
        // that better. Without a terminal it has no such way.
        polkit.emplace_back("--disable-internal-agent");
    }
    const Attempt first = attempt(std::move(polkit), shellCommand, lastLook);
    if (first.hadRights || !means.hasTerminal || Task::isCancelled() ||
        !nobodyToAsk(first.outcome)) {
        return first.completed;
    }
    return attempt({means.sudo, "--"}, shellCommand, lastLook).completed;
}

LinuxElevation::Attempt LinuxElevation::attempt(std::vector<std::string> words,
                                                const std::string& shellCommand,
                                                const LastLook& lastLook) {
    words.insert(words.end(),
                 {shell, "-c", fmt::format("echo ready; read go && {{ {}; }}", shellCommand)});
    Attempt result;
    bool agreed = false;
    ProcessRequest request;
    request.executable = words.front();
    request.arguments.assign(words.begin() + 1, words.end());
    request.captureErrors = true;
    // What asks needs the terminal; without a question, ending early takes the command along.
    request.usesTerminal = words.front() != shell;
    request.conversation = [&](std::string_view output) -> std::optional<std::string> {
        if (output.find(readyLine) == std::string_view::npos) {
            return std::nullopt;
        }
        result.hadRights = true;
        agreed = !Task::isCancelled() && lastLook();
        return agreed ? "go\n" : "";
    };
    result.outcome = launcher_.run(request);
    result.completed = agreed && result.outcome.succeeded();
    return result;
}

Elevation& Elevation::standard() {
    static LinuxElevation elevation;
    return elevation;
}

} // namespace korvane
