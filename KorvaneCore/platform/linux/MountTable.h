#pragma once

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/platform/linux/ItemErrors.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// Where file systems are mounted (bind mounts too), as the kernel lists it. Kept in memory and
/// read again only when the kernel says that it changed. Any thread.
class MountTable {
  public:
    struct Mount {
        std::uint64_t id = 0;
        std::string path;
        friend bool operator==(const Mount&, const Mount&) = default;
    };

    /// What /proc/self/mountinfo holds, in its order; lines that are none are left out.
    [[nodiscard]] static std::vector<Mount> parse(std::string_view text);

    /// The mount with this number. Throws FileError when the table cannot be read.
    [[nodiscard]] std::optional<Mount> find(std::uint64_t id);

    /// Throws FileError (EXDEV) when the item is a mount point or holds one; `path` must be free of
    /// links. Throws, too, when the table cannot be read: not knowing is no permission.
    void refuseMountsWithin(const std::string& path, ItemAction action);

  private:
    void refresh(const std::string& path, ItemAction action);
    [[nodiscard]] bool read();

    std::mutex lock_;
    FileDescriptor file_;
    std::vector<Mount> mounts_;
};

} // namespace korvane
