#pragma once

#include <utility>

namespace korvane {

/// Owns one open file descriptor and closes it.
class FileDescriptor {
  public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) noexcept : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            reset();
            descriptor_ = std::exchange(other.descriptor_, -1);
        }
        return *this;
    }
    ~FileDescriptor() { reset(); }

    [[nodiscard]] int get() const noexcept { return descriptor_; }
    [[nodiscard]] explicit operator bool() const noexcept { return descriptor_ >= 0; }

    /// Closes now; `errno` is left as it was.
    void reset() noexcept;

    /// Gives the descriptor up without closing it.
    [[nodiscard]] int release() noexcept { return std::exchange(descriptor_, -1); }

  private:
    int descriptor_ = -1;
};

} // namespace korvane
