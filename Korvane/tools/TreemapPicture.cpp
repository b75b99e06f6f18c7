#include "Korvane/tools/TreemapPicture.h"

#include "Korvane/tools/UsageEntries.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scan/ByteDisplay.h"
#include "KorvaneCore/scanners/Treemap.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <string_view>
#include <vector>

#include <fmt/format.h>

namespace korvane {

namespace {

using Treemap::Rectangle;

constexpr double margin = 16;
constexpr double titleHeight = 52;
constexpr double legendHeight = 36;
constexpr double gap = 1.5; ///< between two entries
constexpr double nameSize = 13;
constexpr double detailSize = 11;
// What a column of proportional text takes of its size, at the most in running text.
constexpr double columnWidth = 0.6;

// How entries of each kind look: dark letters can be read on all of the colours.
constexpr std::array<std::string_view, UsageEntries::kindCount> colours{
    "#8fb8de", "#c3a6d8", "#e3b778", "#e59a8e", "#9fd3b0",
    "#f1d47a", "#b7d38c", "#8fcfd1", "#c9ced6"};

std::string_view colour(const DiskUsageNode& node) {
    return colours.at(UsageEntries::kind(node));
}

/// Text as it may stand in XML. What displayText leaves and XML forbids are two non-characters.
std::string escaped(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string_view rest = text.substr(i);
        if (rest.starts_with("\xEF\xBF\xBE") || rest.starts_with("\xEF\xBF\xBF")) {
            result += "\xEF\xBF\xBD";
            i += 2;
        } else if (rest[0] == '&') {
            result += "&amp;";
        } else if (rest[0] == '<') {
            result += "&lt;";
        } else if (rest[0] == '>') {
            result += "&gt;";
        } else if (rest[0] == '"') {
            result += "&quot;";
        } else {
            result += rest[0];
        }
    }
    return result;
}

bool isContinuation(char byte) noexcept {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The text, its end replaced by "…" where it takes more than `columns`.
std::string shortened(std::string text, std::size_t columns) {
    if (displayWidth(text) <= columns) {
        return text;
    }
    while (!text.empty() && displayWidth(text) + 1 > columns) {
        while (isContinuation(text.back())) {
            text.pop_back();
        }
        text.pop_back();
    }
    return text + "…";
}

std::size_t columnsIn(double width, double size) {
    return static_cast<std::size_t>(std::max(0.0, width / (size * columnWidth)));
}

std::string text(double x, double y, std::string_view kind, std::string_view content) {
    return fmt::format("<text x=\"{:.2f}\" y=\"{:.2f}\" class=\"{}\">{}</text>\n", x, y, kind,
                       escaped(content));
}

/// The name, and the size below it, as far as there is room for them.
std::string label(const DiskUsageNode& node, const Rectangle& box) {
    constexpr double inset = 7;
    constexpr std::size_t leastColumns = 3;
    const std::size_t columns = columnsIn(box.width - 2 * inset, nameSize);
    if (columns < leastColumns || box.height < nameSize + inset) {
        return "";
    }
    std::string result = text(box.x + inset, box.y + nameSize + 5, "name",
                              shortened(displayText(node.name), columns));
    const std::string size = ByteDisplay::format(node.sizeBytes);
    const bool hasRoom = box.height >= nameSize + detailSize + 2 * inset;
    if (hasRoom && displayWidth(size) <= columnsIn(box.width - 2 * inset, detailSize)) {
        result += text(box.x + inset, box.y + nameSize + detailSize + 10, "detail", size);
    }
    return result;
}

std::string tile(const DiskUsageNode& node, const Rectangle& place, std::int64_t total) {
    const Rectangle box{margin + place.x + gap / 2, titleHeight + place.y + gap / 2,
                        place.width - gap, place.height - gap};
    // A rectangle that no pixel would show costs only size.
    const bool isVisible = std::isfinite(place.width) && std::isfinite(place.height) &&
                           box.width > 0.2 && box.height > 0.2;
    if (!isVisible) {
        return "";
    }
    std::string result = fmt::format(
        "<g><title>{}\n{} · {}</title>\n"
        "<rect x=\"{:.2f}\" y=\"{:.2f}\" width=\"{:.2f}\" height=\"{:.2f}\" rx=\"{:.1f}\" "
        "fill=\"{}\"/>\n",
        escaped(displayText(node.name)), ByteDisplay::format(node.sizeBytes),
        UsageEntries::share(node.sizeBytes, total), box.x, box.y, box.width, box.height,
        std::min({3.0, box.width / 4, box.height / 4}), colour(node));
    return result + label(node, box) + "</g>\n";
}

/// The colours that occur, as far as the width allows.
std::string legend(std::span<const DiskUsageNode> nodes, double y, double width) {
    std::set<std::size_t> used;
    for (const DiskUsageNode& node : nodes) {
        if (node.sizeBytes > 0) {
            used.insert(UsageEntries::kind(node));
        }
    }
    std::string result;
    double x = margin;
    for (const std::size_t kind : used) {
        const std::string_view title = UsageEntries::kindTitle(kind);
        const double taken =
            30 + static_cast<double>(displayWidth(title)) * detailSize * columnWidth;
        if (x + taken > margin + width) {
            continue;
        }
        result += fmt::format("<rect x=\"{:.2f}\" y=\"{:.2f}\" width=\"11\" height=\"11\" rx=\"2\" "
                              "fill=\"{}\"/>\n",
                              x, y - 9.5, colours.at(kind));
        result += text(x + 16, y, "detail", title);
        x += taken;
    }
    return result;
}

constexpr std::string_view style = R"(<style>
text{font-family:"DejaVu Sans","Liberation Sans",sans-serif;fill:#1d2733}
.title{font-size:18px;font-weight:600}
.name{font-size:13px;font-weight:500}
.detail{font-size:11px;fill:#3d4a59}
.total{font-size:13px;fill:#3d4a59;text-anchor:end}
</style>
)";

} // namespace

std::string treemapPicture(const FileURL& folder, std::span<const DiskUsageNode> nodes,
                           double width, double height) {
    const std::int64_t total = UsageEntries::totalBytes(nodes);
    std::vector<double> values;
    for (const DiskUsageNode& node : nodes) {
        values.push_back(static_cast<double>(node.sizeBytes));
    }
    const std::vector<Rectangle> places = Treemap::layout(values, width, height);
    const double fullWidth = width + 2 * margin;
    const double fullHeight = height + titleHeight + legendHeight;
    std::string svg = fmt::format(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0:.2f}\" height=\"{1:.2f}\" "
        "viewBox=\"0 0 {0:.2f} {1:.2f}\">\n{2}"
        "<rect width=\"100%\" height=\"100%\" fill=\"#f6f7f9\"/>\n",
        fullWidth, fullHeight, style);
    const std::string amount = fmt::format("{} · {} {}", ByteDisplay::format(total), nodes.size(),
                                           nodes.size() == 1 ? "entry" : "entries");
    const double amountWidth =
        static_cast<double>(displayWidth(amount)) * nameSize * columnWidth + margin;
    svg += text(margin, 33, "title",
                shortened(displayText(folder.path()), columnsIn(width - amountWidth, 18)));
    svg += text(margin + width, 33, "total", amount);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        svg += tile(nodes[i], places[i], total);
    }
    if (total == 0) {
        svg += text(margin, titleHeight + 24, "detail", "Nothing in here takes room.");
    }
    svg += legend(nodes, titleHeight + height + 23, width);
    return svg + "</svg>\n";
}

} // namespace korvane
