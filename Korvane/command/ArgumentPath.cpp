#include "Korvane/command/ArgumentPath.h"

#include <filesystem>

namespace korvane {

FileURL argumentLocation(const std::string& argument, const FileURL& home) {
    if (auto url = FileURL::fromAbsoluteString(argument)) {
        return *url;
    }
    std::string path = expandingTilde(argument, home);
    if (path.starts_with('/') || path.empty()) {
        return FileURL(std::move(path));
    }
    return FileURL(std::filesystem::current_path().string()).appending(path);
}

} // namespace korvane
