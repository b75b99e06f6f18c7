#pragma once

#include "KorvaneCore/foundation/Date.h"
#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/foundation/UUID.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace korvane {

/// One entry of a folder with what it takes on the disk. Equal over all of its fields.
struct DiskUsageNode {
    UUID id = UUID::random();
    FileURL url{};
    std::string name{};         ///< the last path component, its bytes
    std::int64_t sizeBytes = 0; ///< on disk; of a folder everything inside
    bool isDirectory = false;
    std::int64_t childCount = 0; ///< entries directly inside; 0 for files
    std::optional<Date> lastModified{};

    friend bool operator==(const DiskUsageNode&, const DiskUsageNode&) = default;
};

} // namespace korvane

template <>
struct std::hash<korvane::DiskUsageNode> {
    std::size_t operator()(const korvane::DiskUsageNode& node) const noexcept {
        // No two nodes share an id, except copies.
        return std::hash<korvane::UUID>{}(node.id);
    }
};
