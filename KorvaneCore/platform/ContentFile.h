#pragma once

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/platform/FolderFacts.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <span>

namespace korvane {

/// A regular file open for reading all of its content, which tells whether the content stood still
/// meanwhile. Not shared between threads.
class ContentFile {
  public:
    /// What the file was at one moment. Equal states: nothing was written between them.
    struct State {
        FileIdentity identity;
        std::int64_t sizeBytes = 0;
        std::timespec modified{};
        std::timespec changed{}; ///< of content, rights or names
        std::uint64_t names = 0; ///< how many hard links there are

        friend bool operator==(const State& a, const State& b) noexcept {
            return a.identity == b.identity && a.sizeBytes == b.sizeBytes &&
                   a.modified.tv_sec == b.modified.tv_sec &&
                   a.modified.tv_nsec == b.modified.tv_nsec &&
                   a.changed.tv_sec == b.changed.tv_sec && a.changed.tv_nsec == b.changed.tv_nsec &&
                   a.names == b.names;
        }
    };

    ContentFile() = default;

    /// Opens a name in an open folder, never a link, never waiting for a writer. False, with no
    /// file open, when there is no regular file or it may not be read.
    [[nodiscard]] bool open(int folder, const char* name) noexcept;
    void close() noexcept { descriptor_.reset(); }

    [[nodiscard]] explicit operator bool() const noexcept { return static_cast<bool>(descriptor_); }

    /// As it was when it was opened.
    [[nodiscard]] const State& state() const noexcept { return state_; }

    /// Asks the system to fetch up to `bytes` from the beginning, and returns at once.
    void readAhead(std::int64_t bytes) noexcept;

    /// The next bytes: how many, 0 at the end, negative after an error.
    [[nodiscard]] std::int64_t read(std::span<std::byte> buffer) noexcept;

    /// Whether the state is still the one it was opened in.
    [[nodiscard]] bool isUnchanged() const noexcept;

  private:
    FileDescriptor descriptor_;
    State state_;
};

} // namespace korvane
