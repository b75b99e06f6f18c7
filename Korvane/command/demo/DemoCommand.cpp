#include "Korvane/command/CommandContext.h"
#include "Korvane/command/CommandLine.h"
#include "Korvane/command/Interrupt.h"
#include "Korvane/command/Terminal.h"
#include "Korvane/command/demo/SampleHome.h"
#include "Korvane/command/demo/TreeSnapshot.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/platform/DirectoryReader.h"

#include <cerrno>
#include <cstdlib>

#include <fmt/format.h>

namespace korvane {

namespace {

/// The folder to lay the sample out in: made when it is missing, refused when it holds anything.
FileURL prepareFolder(const CommandContext& context, const std::string& argument) {
    if (argument.empty()) {
        std::string path = context.services.folders().temporary.path() + "/korvane-demo-XXXXXX";
        if (mkdtemp(path.data()) == nullptr) {
            throw FileError(errno, "create the folder", path);
        }
        return FileURL(path).resolvingSymlinks();
    }
    const FileURL folder = context.location(argument);
    createDirectories(folder);
    const auto names = namesInFolder(folder.path());
    if (!names) {
        throw FileError(errno, "read", folder.path());
    }
    if (!names->empty()) {
        throw CommandFailure(
            fmt::format("{} is not empty; the demo only works in a folder of its own",
                        displayText(folder.path())));
    }
    return folder.resolvingSymlinks();
}

/// From here on this process is a user whose home is the sample, with no session of the real one.
UserFolders becomeSampleUser(const FileURL& home) {
    // No other thread runs yet.
    setenv("HOME", home.path().c_str(), 1); // NOLINT(concurrency-mt-unsafe)
    unsetenv("XDG_DATA_HOME");              // NOLINT(concurrency-mt-unsafe)
    unsetenv("XDG_CONFIG_HOME");            // NOLINT(concurrency-mt-unsafe)
    unsetenv("DBUS_SESSION_BUS_ADDRESS");   // NOLINT(concurrency-mt-unsafe)
    unsetenv("XDG_RUNTIME_DIR");            // NOLINT(concurrency-mt-unsafe)
    return UserFolders::current();
}

/// As a shell would have to be told; a "~" at the beginning stays one.
std::string asTyped(const std::vector<std::string>& command) {
    std::string text;
    for (const std::string& word : command) {
        text += ' ';
        for (const char c : word) {
            text += c == ' ' ? "\\ " : std::string(1, c);
        }
    }
    return text;
}

/// Runs the steps as a person would type them, each shown before it runs.
class Demo {
  public:
    explicit Demo(UserFolders folders) : services_(std::move(folders)) {}

    void say(std::string_view sentence) {
        Terminal::printLine("");
        Terminal::printLine(Terminal::styled(sentence, Terminal::Style::bold));
    }

    /// False when the step did not end as it should, or the user asked to stop.
    bool step(std::string_view sentence, const std::vector<std::string>& command,
              int expected = exitDone) {
        say(sentence);
        Terminal::printLine(fmt::format("$ korvane{}\n", asTyped(command)));
        return runCommandLine(command, services_) == expected;
    }

    [[nodiscard]] TreeSnapshot snapshot() const {
        const UserFolders& folders = services_.folders();
        // What Korvane keeps for itself, and the Bin, are not the user's files.
        return takeSnapshot(folders.home, {folders.home.appending(".local"),
                                           folders.configuration.appending("Korvane")});
    }

  private:
    Services services_;
};

int compare(const TreeSnapshot& before, const TreeSnapshot& after) {
    const std::vector<std::string> differing = differences(before, after);
    for (const std::string& path : differing) {
        Terminal::printLine(fmt::format("  differs: {}", displayText(path)));
    }
    if (!differing.empty()) {
        throw CommandFailure("the sample home is not as it was before");
    }
    Terminal::printLine(fmt::format("Everything is back: {} files, folders and links are exactly "
                                    "as they were.",
                                    before.size()));
    return exitDone;
}

bool runSteps(Demo& demo) {
    return demo.step(
               "Protect one browser's data for ever.",
               {"protect", "add", "~/Library/Application Support/Vivaldi", "--note", "mine"}) &&
           demo.step("Look for what can go. Nothing is touched.", {"scan", "smart-scan"}) &&
           demo.step("Move what is ticked to the Bin.", {"clean", "smart-scan", "--yes"}) &&
           demo.step("Keep the newest of identical files.",
                     {"clean", "duplicate-finder", "~/Downloads", "--yes"}) &&
           demo.step("Show pictures that look alike; nothing of them is ever ticked.",
                     {"scan", "similar-images", "~/Pictures"}) &&
           demo.step("What the protected path and the guard say.",
                     {"check", "~/Library/Application Support/Vivaldi/Default/Cache", "~/Documents",
                      "~/.ssh"},
                     exitWrong) &&
           demo.step("Every removal is in the log.", {"audit", "list"}) &&
           demo.step("Nobody has edited the log.", {"audit", "verify"}) &&
           demo.step("Put everything back.", {"restore", "--all"}) &&
           demo.step("The restore is in the log too.", {"audit", "verify"});
}

int runDemo(CommandContext& context, const std::string& argument) {
    const FileURL home = prepareFolder(context, argument);
    FileManager& files = context.services.fileManager();
    int status = exitWrong;
    {
        Demo demo(becomeSampleUser(home));
        demo.say(fmt::format("A sample home in {}", displayText(home.path())));
        layOutSampleHome(home);
        const TreeSnapshot before = demo.snapshot();
        Terminal::printLine(fmt::format("{} files, folders and links.", before.size()));
        if (runSteps(demo)) {
            demo.say("Compare the home with what it was.");
            status = compare(before, demo.snapshot());
        } else if (!Interrupt::happened()) {
            throw CommandFailure(
                fmt::format("a step did not end as it should; see {}", displayText(home.path())));
        }
    }
    if (argument.empty()) {
        files.removeItem(home);
    }
    return status;
}

} // namespace

void addDemoCommand(CLI::App& app, CommandContext& context) {
    CLI::App* command = addLeaf(
        app, "demo", "The whole job on a sample home: scan, clean, verify, restore", context);
    auto folder = std::make_shared<std::string>();
    command->add_option("FOLDER", *folder,
                        "An empty folder that becomes the sample home (default: a temporary one)");
    command->callback([&context, folder] {
        context.action = [&context, folder] { return runDemo(context, *folder); };
    });
}

} // namespace korvane
