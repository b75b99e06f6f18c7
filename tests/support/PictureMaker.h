#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace korvane::testing {

/// A picture to be written as a file of any kind.
struct Picture {
    int width = 0;
    int height = 0;
    int bands = 3; ///< 1 grey, 3 colours, 4 with opacity
    std::vector<std::uint8_t> pixels{};

    /// Smooth shapes; pictures of different seeds look nothing alike.
    [[nodiscard]] static Picture ofShapes(unsigned seed, int width = 320, int height = 240);
    [[nodiscard]] static Picture ofShade(std::uint8_t grey, int width = 48, int height = 40);

    /// Turned a quarter to the left.
    [[nodiscard]] Picture turnedLeft() const;

    /// The bytes of a file: `format` is the extension and, in brackets, how to write it
    /// (".jpg[Q=50]"). `orientation` as cameras note it, 1 to 8; 0 for none.
    [[nodiscard]] std::string file(const std::string& format, int orientation = 0) const;
};

/// A picture of one shade with so many pixels that nobody should decode it.
[[nodiscard]] std::string hugeFile(const std::string& format, int width, int height);

} // namespace korvane::testing
