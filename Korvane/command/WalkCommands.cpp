#include "Korvane/command/CommandContext.h"
#include "Korvane/command/Interrupt.h"
#include "Korvane/command/JsonForms.h"
#include "Korvane/command/Terminal.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/platform/ProcessLauncher.h"
#include "KorvaneCore/scan/ByteDisplay.h"
#include "KorvaneCore/scan/FileSystemSize.h"
#include "KorvaneCore/scan/FileSystemWalker.h"

#include <fmt/format.h>

namespace korvane {

namespace {

struct WalkArguments {
    std::string folder;
    std::vector<std::string> prune;
    std::int64_t maxDepth = 0;
    bool hasMaxDepth = false;
    WalkOptions options;
    std::int64_t stopAfter = 0; ///< 0: visit everything
};

struct MeasureArguments {
    std::vector<std::string> paths;
    bool diskUsage = false;
};

struct FindArguments {
    std::vector<std::string> names;
    std::string folder;
    std::int64_t minimumBytes = 100'000'000;
    std::size_t limit = 200;
};

FileURL requireFolder(const CommandContext& context, const std::string& argument) {
    FileURL folder = context.location(argument);
    if (!context.services.fileManager().itemExists(folder)) {
        throw CommandFailure(fmt::format("there is no {}", displayText(folder.path())));
    }
    return folder;
}

std::string entryLine(const WalkEntry& entry) {
    const char kind = entry.isSymlink ? 'l' : entry.isDirectory ? 'd' : '-';
    const std::string date = entry.lastModified ? entry.lastModified->iso8601() : "";
    return fmt::format("{} {:>14} {:>20} {}\n", kind, entry.sizeBytes, date,
                       displayText(entry.url.path()));
}

void printEntries(const CommandContext& context, const std::vector<WalkEntry>& entries) {
    if (context.json) {
        Json array = Json::array();
        for (const WalkEntry& entry : entries) {
            array.push_back(toJson(entry));
        }
        printJson(array);
        return;
    }
    for (const WalkEntry& entry : entries) {
        Terminal::printLine(fmt::format("{}  {}",
                                        Terminal::padLeft(ByteDisplay::format(entry.sizeBytes), 9),
                                        displayText(entry.url.path())));
    }
}

/// Printed as it goes, so that a tree of any size needs no memory.
WalkSummary printWalk(const CommandContext& context, const FileSystemWalker& walker,
                      const FileURL& folder, std::int64_t stopAfter) {
    std::int64_t seen = 0;
    const auto visit = [&](const WalkEntry& entry) {
        ++seen;
        if (context.json) {
            Terminal::print(seen > 1 ? ",\n" : "\n");
            Terminal::print(compactJson(toJson(entry)));
        } else {
            Terminal::print(entryLine(entry));
        }
        const bool enough = seen == stopAfter || std::ferror(stdout) != 0;
        return enough ? WalkDecision::stop : WalkDecision::proceed;
    };
    if (context.json) {
        Terminal::print("{\"entries\":[");
    }
    const WalkSummary summary = walker.walk(folder, nullptr, visit);
    if (context.json) {
        Terminal::printLine(fmt::format("],\n\"summary\":{}}}", compactJson(toJson(summary))));
    }
    return summary;
}

int walk(const CommandContext& context, const WalkArguments& arguments) {
    WalkOptions options = arguments.options;
    options.pruneDirectoryNames = {arguments.prune.begin(), arguments.prune.end()};
    if (arguments.hasMaxDepth) {
        options.maxDepth = arguments.maxDepth;
    }
    const FileSystemWalker walker(options);
    const FileURL folder = requireFolder(context, arguments.folder);
    const WalkSummary summary = printWalk(context, walker, folder, arguments.stopAfter);
    for (const WalkError& error : summary.errors) {
        Terminal::note(
            fmt::format("{}: {}", displayText(error.url.path()), displayText(error.underlying)));
    }
    return summary.errors.empty() ? exitDone : exitWrong;
}

int measure(const CommandContext& context, const MeasureArguments& arguments) {
    Json array = Json::array();
    int status = exitDone;
    for (const std::string& argument : arguments.paths) {
        const FileURL url = context.location(argument);
        if (!context.services.fileManager().itemExists(url)) {
            Terminal::note(fmt::format("there is no {}", displayText(url.path())));
            status = exitWrong;
        }
        const std::int64_t bytes = arguments.diskUsage
                                       ? FileSystemSize::diskUsage(url, ProcessLauncher::standard())
                                       : FileSystemSize::allocatedSize(url);
        if (context.json) {
            array.push_back({{"path", pathText(url.path())}, {"bytes", bytes}});
        } else {
            Terminal::printLine(fmt::format("{}  {}",
                                            Terminal::padLeft(ByteDisplay::format(bytes), 9),
                                            displayText(url.path())));
        }
        if (Interrupt::happened()) {
            break;
        }
    }
    if (context.json) {
        printJson(array);
    }
    return status;
}

int findFolders(const CommandContext& context, const FindArguments& arguments) {
    const FileURL folder = requireFolder(context, arguments.folder);
    const std::set<std::string> names(arguments.names.begin(), arguments.names.end());
    WalkOptions options;
    // ".venv" can only be found where hidden names are looked at.
    options.includeHidden = std::any_of(names.begin(), names.end(),
                                        [](const auto& name) { return name.starts_with('.'); });
    printEntries(context, FileSystemWalker(options).findFolders(names, folder));
    return exitDone;
}

int largest(const CommandContext& context, const FindArguments& arguments) {
    const FileURL folder = requireFolder(context, arguments.folder);
    printEntries(context,
                 FileSystemWalker().largestFiles(folder, arguments.minimumBytes, arguments.limit));
    return exitDone;
}

void addWalk(CLI::App& app, CommandContext& context) {
    CLI::App* command = addLeaf(app, "walk", "Visit a folder tree", context);
    auto arguments = std::make_shared<WalkArguments>();
    command->add_option("FOLDER", arguments->folder, "Where to begin")->required();
    command->add_flag("--include-hidden", arguments->options.includeHidden,
                      "Also names that begin with a dot");
    command->add_flag("--follow-symlinks", arguments->options.followSymlinks,
                      "Enter folders through links");
    command
        ->add_option("--max-depth", arguments->maxDepth, "Deepest depth whose folders are entered")
        ->check(CLI::NonNegativeNumber)
        ->each([arguments](const std::string&) { arguments->hasMaxDepth = true; });
    command
        ->add_option("--prune", arguments->prune, "Never enter folders of this name (repeatable)")
        ->allow_extra_args(false);
    command->add_option("--stop-after", arguments->stopAfter, "End after this many entries")
        ->check(CLI::PositiveNumber);
    command->callback([&context, arguments] {
        context.action = [&context, arguments] { return walk(context, *arguments); };
    });
}

void addMeasure(CLI::App& app, CommandContext& context) {
    CLI::App* command = addLeaf(app, "measure", "How much paths occupy", context);
    auto arguments = std::make_shared<MeasureArguments>();
    command->add_option("PATH", arguments->paths, "Files or folders")->required();
    command->add_flag("--disk-usage", arguments->diskUsage, "Ask the system's du instead");
    command->callback([&context, arguments] {
        context.action = [&context, arguments] { return measure(context, *arguments); };
    });
}

void addFinders(CLI::App& app, CommandContext& context) {
    CLI::App* finding = addLeaf(app, "find-folders", "Folders of given names, sized", context);
    auto names = std::make_shared<FindArguments>();
    finding->add_option("NAME", names->names, "Exact names")->required();
    finding->add_option("--in", names->folder, "Where to look")->required();
    finding->callback([&context, names] {
        context.action = [&context, names] { return findFolders(context, *names); };
    });

    CLI::App* sizing = addLeaf(app, "largest", "The largest files below a folder", context);
    auto limits = std::make_shared<FindArguments>();
    sizing->add_option("FOLDER", limits->folder, "Where to look")->required();
    sizing->add_option("--minimum-bytes", limits->minimumBytes, "Leave out smaller ones")
        ->capture_default_str()
        ->check(CLI::NonNegativeNumber);
    sizing->add_option("--limit", limits->limit, "How many at the most")->capture_default_str();
    sizing->callback([&context, limits] {
        context.action = [&context, limits] { return largest(context, *limits); };
    });
}

} // namespace

void addWalkCommands(CLI::App& app, CommandContext& context) {
    addWalk(app, context);
    addMeasure(app, context);
    addFinders(app, context);
}

} // namespace korvane
