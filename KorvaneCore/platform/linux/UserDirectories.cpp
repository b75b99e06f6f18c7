#include "KorvaneCore/platform/UserDirectories.h"

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/StateFile.h"

#include <optional>
#include <string>
#include <string_view>

namespace korvane {

namespace {

/// The value of `key="$HOME/…"` or `key="/…"`, as the XDG tools write it; the last line counts.
std::optional<std::string> configured(std::string_view text, std::string_view key,
                                      const FileURL& home) {
    constexpr std::string_view homeVariable = "$HOME/";
    std::optional<std::string> value;
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        if (!line.starts_with(key) || !line.substr(key.size()).starts_with("=\"")) {
            continue;
        }
        line.remove_prefix(key.size() + 2);
        std::string path;
        std::size_t i = 0;
        for (; i < line.size() && line[i] != '"'; ++i) {
            i += line[i] == '\\' && i + 1 < line.size() ? 1U : 0U;
            path += line[i];
        }
        if (path.starts_with(homeVariable)) {
            path = home.path() + "/" + path.substr(homeVariable.size());
        }
        if (i < line.size() && path.starts_with('/')) {
            value = std::move(path);
        }
    }
    return value;
}

/// A folder that the user switched off is set to the home folder itself: nothing that is looked for
/// in a desktop or download folder may be looked for there.
bool isInside(const FileURL& folder, const FileURL& home) {
    const std::string prefix = home.standardized().path() + "/";
    const std::string path = folder.standardized().path();
    return path.starts_with(prefix) && path.size() > prefix.size();
}

} // namespace

UserDirectories UserDirectories::read(const UserFolders& folders) {
    std::string text;
    try {
        text = readFile(folders.configuration.appending("user-dirs.dirs")).value_or("");
    } catch (const FileError&) {
        text.clear(); // then the usual names stand
    }
    const auto folder = [&](std::string_view key, std::string_view usualName) {
        if (const auto path = configured(text, key, folders.home)) {
            FileURL place(*path);
            if (isInside(place, folders.home)) {
                return place;
            }
        }
        return folders.home.appending(usualName);
    };
    return {folder("XDG_DESKTOP_DIR", "Desktop"), folder("XDG_DOWNLOAD_DIR", "Downloads"),
            folder("XDG_PICTURES_DIR", "Pictures"), folder("XDG_VIDEOS_DIR", "Videos")};
}

} // namespace korvane
