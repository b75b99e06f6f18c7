#include "Korvane/tools/UsageEntries.h"

#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/scanners/FileKind.h"

#include <fmt/format.h>

namespace korvane::UsageEntries {

static_assert(static_cast<std::size_t>(FileKind::other) + 2 == kindCount);

std::size_t kind(const DiskUsageNode& node) {
    return node.isDirectory ? 0 : 1 + static_cast<std::size_t>(fileKind(node.url.pathExtension()));
}

std::string_view kindTitle(std::size_t kind) noexcept {
    return kind == 0 ? "Folders" : title(static_cast<FileKind>(kind - 1));
}

std::int64_t totalBytes(std::span<const DiskUsageNode> nodes) {
    std::int64_t total = 0;
    for (const DiskUsageNode& node : nodes) {
        total = checkedAdd(total, node.sizeBytes);
    }
    return total;
}

std::string share(std::int64_t bytes, std::int64_t total) {
    const double percent =
        total > 0 ? 100 * static_cast<double>(bytes) / static_cast<double>(total) : 0;
    return percent >= 10 ? fmt::format("{:.0f} %", percent) : fmt::format("{:.1f} %", percent);
}

} // namespace korvane::UsageEntries
