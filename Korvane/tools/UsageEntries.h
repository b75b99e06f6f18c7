#pragma once

#include "KorvaneCore/scanners/DiskUsageNode.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// What lists and pictures of a folder's entries say about them.
namespace korvane::UsageEntries {

/// Folders come first, then the kinds of files in the order of FileKind.
inline constexpr std::size_t kindCount = 9;

/// Which of the kinds an entry is: a number below `kindCount`.
[[nodiscard]] std::size_t kind(const DiskUsageNode& node);

/// For people, in the plural: "Folders".
[[nodiscard]] std::string_view kindTitle(std::size_t kind) noexcept;

[[nodiscard]] std::int64_t totalBytes(std::span<const DiskUsageNode> nodes);

/// "12 %", with a decimal below 10.
[[nodiscard]] std::string share(std::int64_t bytes, std::int64_t total);

} // namespace korvane::UsageEntries
