#pragma once

#include <optional>
#include <string>
#include <vector>

namespace korvane {

/// One release as the update feed announces it.
struct UpdateRelease {
    std::string version; ///< the marketing version
    std::string url;     ///< of the image that holds the app
    std::string sha256;  ///< of the image, hexadecimal
    std::vector<std::string> notes;
    std::optional<std::string> minimumSystemVersion; ///< the oldest system that can run it

    friend bool operator==(const UpdateRelease&, const UpdateRelease&) = default;
};

} // namespace korvane
