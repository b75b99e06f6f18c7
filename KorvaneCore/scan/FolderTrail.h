#pragma once

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/platform/FolderFacts.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// The open folders from where a walk started down to the one it is in. Only the first and the
/// deepest few keep their descriptor; one that is needed again is opened by way of its child's ".."
/// (or of the names from the start) and taken only when it is the very same folder. So depth and
/// path length have no limit, and the folder that is read is always the one that was listed.
class FolderTrail {
  public:
    /// `followsLinks`: names on the way may be links to folders.
    explicit FolderTrail(bool followsLinks = false) noexcept : followsLinks_(followsLinks) {}

    [[nodiscard]] std::size_t levels() const noexcept { return levels_.size(); }

    /// Starts anew at an open folder of this path.
    void start(FileDescriptor folder, std::string path);

    /// Goes into an open folder, which `name` in the deepest one led to.
    void push(FileDescriptor folder, std::string_view name);

    /// Goes back to the folder above.
    void leave();

    /// The descriptor of the deepest folder, or -1 when it cannot be reached again (`error()`).
    [[nodiscard]] int descriptor() const noexcept { return levels_.back().folder.get(); }
    [[nodiscard]] int error() const noexcept { return levels_.back().error; }

    /// The descriptor of any folder on the trail; -1 when it is closed for now.
    [[nodiscard]] int descriptorAt(std::size_t level) const noexcept {
        return levels_[level].folder.get();
    }

    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    [[nodiscard]] std::string pathAt(std::size_t level) const {
        return path_.substr(0, levels_[level].pathLength);
    }
    /// The path of a name in the deepest folder.
    [[nodiscard]] std::string pathOf(std::string_view name) const;

  private:
    struct Level {
        FileDescriptor folder;
        FileIdentity identity; ///< known once the descriptor was given up
        std::size_t pathLength = 0;
        int error = 0;
    };

    void giveUpOne();
    void reopenDeepest(int child);
    [[nodiscard]] FileDescriptor openAlongNames() const;

    bool followsLinks_;
    std::vector<Level> levels_;
    std::size_t firstOpen_ = 1; ///< from here down every level is open; level 0 always is
    std::string path_;
};

} // namespace korvane
