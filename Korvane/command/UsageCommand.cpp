#include "Korvane/command/CommandContext.h"
#include "Korvane/command/Terminal.h"
#include "Korvane/tools/TreemapPicture.h"
#include "Korvane/tools/UsageEntries.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scan/ByteDisplay.h"
#include "KorvaneCore/scanners/DiskUsageScanner.h"
#include "KorvaneCore/scanners/Treemap.h"

#include <charconv>
#include <cmath>

#include <fmt/format.h>

namespace korvane {

namespace {

struct Size {
    double width = 1200;
    double height = 800;
};

struct UsageArguments {
    std::string folder;
    std::string treemap; ///< "WxH"; empty: not asked for
    std::string picture; ///< where the SVG goes; empty: nowhere
    bool includeHidden = false;
};

using Nodes = std::vector<DiskUsageNode>;

std::optional<double> positiveNumber(std::string_view text) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole && std::isfinite(value) && value > 0 ? std::optional(value) : std::nullopt;
}

Size readSize(std::string_view text) {
    const std::size_t cross = text.find('x');
    if (cross != std::string_view::npos) {
        const auto width = positiveNumber(text.substr(0, cross));
        const auto height = positiveNumber(text.substr(cross + 1));
        if (width && height) {
            return {*width, *height};
        }
    }
    throw UsageError(fmt::format(
        "\"{}\" is no size: --treemap takes width and height as in 800x600", displayText(text)));
}

Json nodeJson(const DiskUsageNode& node) {
    Json object = {{"id", node.id.text()},
                   {"url", node.url.absoluteString()},
                   {"name", isValidUTF8(node.name) ? node.name : displayText(node.name)},
                   {"sizeBytes", node.sizeBytes},
                   {"isDirectory", node.isDirectory},
                   {"childCount", node.childCount}};
    if (node.lastModified) {
        object["lastModified"] = node.lastModified->iso8601();
    }
    return object;
}

Json document(const FileURL& folder, const Nodes& nodes, const std::optional<Size>& treemap) {
    Json children = Json::array();
    std::vector<double> values;
    for (const DiskUsageNode& node : nodes) {
        children.push_back(nodeJson(node));
        values.push_back(static_cast<double>(node.sizeBytes));
    }
    Json result = {{"url", folder.absoluteString()}, {"children", std::move(children)}};
    if (treemap) {
        Json& rectangles = result["rectangles"] = Json::array();
        for (const auto& one : Treemap::layout(values, treemap->width, treemap->height)) {
            rectangles.push_back(
                {{"x", one.x}, {"y", one.y}, {"width", one.width}, {"height", one.height}});
        }
    }
    return result;
}

/// A bar of `columns` for a share of 0…1, in eighths of a column.
std::string bar(double share, std::size_t columns) {
    constexpr std::array<std::string_view, 8> parts = {"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
    const auto eighths =
        static_cast<std::size_t>(std::lround(share * 8 * static_cast<double>(columns)));
    std::string text;
    for (std::size_t i = 0; i < eighths / 8; ++i) {
        text += "█";
    }
    return Terminal::padRight(text + std::string(parts.at(eighths % 8)), columns);
}

std::string line(const DiskUsageNode& node, std::int64_t total, std::int64_t largest) {
    constexpr std::size_t barColumns = 20;
    const auto part = [&](std::int64_t whole) {
        return whole > 0 ? static_cast<double>(node.sizeBytes) / static_cast<double>(whole) : 0.0;
    };
    std::string text = fmt::format(
        "{}  {:>5.1f} %  {}  {}", Terminal::padLeft(ByteDisplay::format(node.sizeBytes), 9),
        part(total) * 100, Terminal::styled(bar(part(largest), barColumns), Terminal::Style::green),
        displayText(node.name));
    if (node.isDirectory) {
        const auto count = static_cast<std::size_t>(node.childCount);
        text += "/" + Terminal::styled(fmt::format("  {}", Terminal::counted(count, "item")),
                                       Terminal::Style::dim);
    }
    return text;
}

void printNodes(const FileURL& folder, const Nodes& nodes) {
    const std::int64_t total = UsageEntries::totalBytes(nodes);
    Terminal::printLine(
        fmt::format("{}  {}", Terminal::styled(displayText(folder.path()), Terminal::Style::bold),
                    Terminal::styled(fmt::format("{} · {}", Terminal::counted(nodes.size(), "item"),
                                                 ByteDisplay::format(total)),
                                     Terminal::Style::dim)));
    for (const DiskUsageNode& node : nodes) {
        Terminal::printLine(line(node, total, nodes.front().sizeBytes));
    }
}

int usage(const CommandContext& context, const UsageArguments& arguments) {
    std::optional<Size> treemap;
    if (!arguments.treemap.empty()) {
        treemap = readSize(arguments.treemap);
    }
    const FileURL folder = context.location(arguments.folder);
    if (!context.services.fileManager().itemExists(folder)) {
        throw CommandFailure(fmt::format("there is no {}", displayText(folder.path())));
    }
    const Nodes nodes =
        DiskUsageScanner().children(folder, {.includeHidden = arguments.includeHidden});
    if (!arguments.picture.empty()) {
        const auto [width, height] = treemap.value_or(Size());
        writeFileAtomically(context.location(arguments.picture),
                            treemapPicture(folder, nodes, width, height));
    }
    if (context.json) {
        printJson(document(folder, nodes, treemap));
    } else {
        printNodes(folder, nodes);
    }
    return exitDone;
}

} // namespace

void addUsageCommand(CLI::App& app, CommandContext& context) {
    CLI::App* command = addLeaf(app, "usage", "What the entries of a folder take", context);
    auto arguments = std::make_shared<UsageArguments>();
    command->add_option("FOLDER", arguments->folder, "The folder to list")->required();
    command->add_option("--treemap", arguments->treemap,
                        "Lay the sizes out in this room, for example 800x600");
    command->add_option("--svg", arguments->picture, "Draw the treemap into this file");
    command->add_flag("--include-hidden", arguments->includeHidden,
                      "Count hidden entries below the folder too");
    command->callback([&context, arguments] {
        context.action = [&context, arguments] { return usage(context, *arguments); };
    });
}

} // namespace korvane
