#pragma once

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/FileURL.h"

#include <chrono>
#include <cstdint>
#include <memory>

namespace korvane {

/// What decoders read a picture through. Reading by descriptor keeps to the file that was checked,
/// cannot crash when the file is cut short meanwhile (as a mapping would), and gives a say to the
/// time limit in decoders that would go on for as long as there is input. One thread at a time.
class PictureInput {
  public:
    /// Opens a regular file, never a link, never waiting for a pipe's writer. Null when it cannot.
    /// The time limit begins.
    [[nodiscard]] static std::unique_ptr<PictureInput> open(const FileURL& url);

    [[nodiscard]] int descriptor() const { return descriptor_.get(); }
    [[nodiscard]] std::int64_t size() const { return size_; }
    [[nodiscard]] std::int64_t position() const { return position_; }
    [[nodiscard]] bool isOverdue() const { return std::chrono::steady_clock::now() > deadline_; }

    /// How many bytes were read and passed: 0 at the end, -1 when reading failed or took too long.
    [[nodiscard]] std::int64_t read(void* buffer, std::size_t length);
    /// The new position, counted as lseek(2) does; -1 when there can be no such position.
    [[nodiscard]] std::int64_t seek(std::int64_t offset, int whence);

  private:
    PictureInput(FileDescriptor descriptor, std::int64_t size);

    FileDescriptor descriptor_;
    std::int64_t size_;
    std::int64_t position_ = 0;
    std::chrono::steady_clock::time_point deadline_;
};

} // namespace korvane
