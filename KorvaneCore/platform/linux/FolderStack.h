#pragma once

#include "KorvaneCore/foundation/FileDescriptor.h"

#include <cstddef>
#include <string>
#include <vector>

#include <sys/types.h>

namespace korvane {

/// The folders from a base down to the one being worked in, of any depth, with a bounded number of
/// them open: the deepest. One that was closed is opened again through ".." of its child and must
/// then be the same folder as before. Not shared between threads.
class FolderStack {
  public:
    /// `base` stays the caller's and stays open.
    explicit FolderStack(int base) noexcept : base_(base) {}

    /// The deepest folder; the base when nothing was entered.
    [[nodiscard]] int descriptor() const noexcept;
    [[nodiscard]] bool isAtBase() const noexcept { return frames_.empty(); }
    [[nodiscard]] std::size_t depth() const noexcept { return frames_.size(); }

    /// Makes `folder`, which is `name` in the current one, the current one. 0, or errno.
    [[nodiscard]] int enter(FileDescriptor folder, std::string name);

    /// Goes back to the folder above and answers the name of the one left in `name`. 0, or errno;
    /// ESTALE when the folder above is another one by now.
    [[nodiscard]] int leave(std::string& name);

    /// The names entered, joined by slashes.
    [[nodiscard]] std::string relativePath() const;

  private:
    struct Frame {
        FileDescriptor folder;
        std::string name;
        dev_t device = 0; ///< known once the folder was closed
        ino_t inode = 0;
    };

    [[nodiscard]] int closeShallowest();
    [[nodiscard]] int openAgain(std::size_t index);

    int base_;
    std::vector<Frame> frames_;
    std::size_t firstOpen_ = 0;
};

} // namespace korvane
