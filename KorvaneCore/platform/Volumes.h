#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <cstdint>
#include <vector>

namespace korvane {

/// A disk, or a part of one, as people see it.
struct Volume {
    FileURL top{};              ///< where it is mounted
    bool isSystem = false;      ///< holds the operating system
    bool holdsHome = false;     ///< holds the home folder
    std::int64_t available = 0; ///< bytes that this user may still write
    std::int64_t total = 0;     ///< bytes that this user could ever write: not what is set aside

    /// 0 to 1.
    [[nodiscard]] double usedShare() const;

    friend bool operator==(const Volume&, const Volume&) = default;
};

/// The volume of the home folder first, then every other mounted disk, each once however often it
/// is mounted. Disks only: nothing from a network, which may keep its reader waiting, nothing made
/// of memory, and no images of software. Any thread.
[[nodiscard]] std::vector<Volume> mountedVolumes(const FileURL& home);

} // namespace korvane
