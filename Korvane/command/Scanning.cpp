#include "Korvane/command/Scanning.h"

#include "Korvane/command/ProgressLine.h"
#include "Korvane/command/Terminal.h"
#include "Korvane/tools/ToolCatalogue.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/platform/ImageDecoder.h"
#include "KorvaneCore/scan/AccessProbe.h"
#include "KorvaneCore/scanners/SmartScanScope.h"

#include <algorithm>

#include <fmt/format.h>

namespace korvane {

namespace {

const Tool& requireTool(const ScanArguments& arguments) {
    const Tool* tool = ToolCatalogue::tool(arguments.tool);
    if (tool == nullptr) {
        throw UsageError(fmt::format("there is no tool \"{}\"; `korvane tools` lists them",
                                     displayText(arguments.tool)));
    }
    if (tool->needs == Tool::Needs::nothing && !arguments.subject.empty()) {
        throw UsageError(fmt::format("{} takes no folder or app, but \"{}\" was given", tool->id,
                                     displayText(arguments.subject)));
    }
    if (tool->needs != Tool::Needs::nothing && arguments.subject.empty()) {
        throw UsageError(fmt::format("{} needs the {} to look at, for example `korvane scan {} {}`",
                                     tool->id, rawValue(tool->needs), tool->id,
                                     tool->needs == Tool::Needs::folder ? "~/Pictures" : "NAME"));
    }
    const auto refuse = [&](bool isGiven, bool isTaken, std::string_view option) {
        if (isGiven && !isTaken) {
            throw UsageError(fmt::format("{} takes no {}", tool->id, option));
        }
    };
    refuse(!arguments.scopes.empty(), tool->options.scopes, "--scopes");
    refuse(arguments.minimumBytes.has_value(), tool->options.minimumBytes, "--minimum-bytes");
    refuse(arguments.limit.has_value(), tool->options.limit, "--limit");
    refuse(arguments.threshold.has_value(), tool->options.threshold, "--threshold");
    return *tool;
}

SmartScanScope requireScope(const std::string& text) {
    if (const auto scope = smartScanScopeFromRawValue(text)) {
        return *scope;
    }
    std::string all;
    for (const SmartScanScope scope : allSmartScanScopes) {
        all += fmt::format("{}{}", all.empty() ? "" : ", ", rawValue(scope));
    }
    throw UsageError(
        fmt::format("there is no scope \"{}\"; choose from {}", displayText(text), all));
}

ScanRequest makeRequest(const CommandContext& context, const Tool& tool,
                        const ScanArguments& arguments) {
    ScanRequest request;
    if (tool.needs == Tool::Needs::folder) {
        request.folder = context.location(arguments.subject);
    } else if (tool.needs == Tool::Needs::app) {
        // A path where it is one, else a name, which may not be taken for a file of this folder.
        request.app = arguments.subject.find('/') == std::string::npos
                          ? arguments.subject
                          : context.location(arguments.subject).path();
    }
    if (!arguments.scopes.empty()) {
        auto& scopes = request.scopes.emplace();
        for (const std::string& text : arguments.scopes) {
            const SmartScanScope scope = requireScope(text);
            if (std::find(scopes.begin(), scopes.end(), scope) == scopes.end()) {
                scopes.push_back(scope);
            }
        }
    }
    request.minimumBytes = arguments.minimumBytes;
    request.limit = arguments.limit;
    request.threshold = arguments.threshold;
    return request;
}

/// A scan leaves out what cannot be read; whoever relies on it should know.
void mentionWhatCannotBeRead(const CommandContext& context, const Tool& tool) {
    if (tool.id == "similar-images" && !ImageDecoder::shared().isAvailable()) {
        Terminal::note("the picture library libvips could not be loaded, so no picture was looked "
                       "at");
    }
    if (tool.needs != Tool::Needs::nothing) {
        return;
    }
    const std::vector<AccessProblem> problems = probeAccess(context.home());
    if (!problems.empty()) {
        Terminal::note(fmt::format("{} could not be read, so what is there was not counted; "
                                   "`korvane access` lists them",
                                   Terminal::counted(problems.size(), "place")));
    }
}

} // namespace

void addScanOptions(CLI::App& command, ScanArguments& arguments) {
    command
        .add_option("--scopes", arguments.scopes,
                    "What a Smart Scan looks for: caches,browsers,oldFiles,developer,leftovers,"
                    "systemFiles")
        ->delimiter(',')
        ->allow_extra_args(false);
    command
        .add_option("--minimum-bytes", arguments.minimumBytes,
                    "Leave smaller files out (duplicate-finder: 4096, large-files: 100000000)")
        ->check(CLI::NonNegativeNumber);
    command.add_option("--limit", arguments.limit, "At most so many files (large-files: 200)")
        ->check(CLI::NonNegativeNumber);
    command
        .add_option("--threshold", arguments.threshold,
                    "How many of 64 bits of two pictures may differ (similar-images: 8)")
        ->check(CLI::Range(0, 64));
}

std::unique_ptr<ToolDriver> runScan(CommandContext& context, const ScanArguments& arguments) {
    const Tool& tool = requireTool(arguments);
    std::shared_ptr<const ModuleScanner> scanner;
    try {
        scanner = ToolCatalogue::makeScanner(tool, makeRequest(context, tool, arguments),
                                             context.services);
    } catch (const ScanRequestError& error) {
        throw CommandFailure(error.what());
    }
    auto driver = std::make_unique<ToolDriver>(scanner->id(), context.services);
    ProgressLine line(!context.noProgress);
    const bool scanned = driver->scan(*scanner, [&](const ScanProgress& progress) {
        line.report(progress.message, progress.fraction);
    });
    line.clear();
    if (!scanned) {
        throw CommandFailure(driver->failure());
    }
    mentionWhatCannotBeRead(context, tool);
    return driver;
}

} // namespace korvane
