#include "KorvaneCore/platform/linux/DesktopEntry.h"

#include <algorithm>
#include <utility>

namespace korvane {

namespace {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view baseName(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

/// The words of a command line; quotation marks hold one together.
std::vector<std::string> words(std::string_view command) {
    std::vector<std::string> found;
    std::string word;
    bool isQuoted = false;
    for (std::size_t i = 0; i < command.size(); ++i) {
        const char c = command[i];
        if (c == '"') {
            isQuoted = !isQuoted;
        } else if (c == '\\' && i + 1 < command.size()) {
            word += command[++i];
        } else if (c == ' ' && !isQuoted) {
            found.push_back(std::exchange(word, {}));
        } else {
            word += c;
        }
    }
    found.push_back(std::move(word));
    std::erase(found, "");
    return found;
}

/// The name of the program that a command line starts, what only sets its environment passed over.
std::string program(std::string_view command) {
    for (const std::string& word : words(command)) {
        const std::string_view name = baseName(word);
        if (name != "env" && !name.empty() && word.find('=') == std::string::npos) {
            return std::string(name);
        }
    }
    return {};
}

} // namespace

DesktopEntry parseDesktopEntry(std::string_view content) {
    DesktopEntry entry;
    bool isMainGroup = false;
    while (!content.empty()) {
        const std::size_t length = std::min(content.find('\n'), content.size());
        const std::string_view line = trimmed(content.substr(0, length));
        content.remove_prefix(std::min(length + 1, content.size()));
        if (line.starts_with('[')) {
            isMainGroup = line == "[Desktop Entry]";
        }
        const std::size_t sign = line.find('=');
        if (!isMainGroup || line.starts_with('#') || sign == std::string_view::npos) {
            continue;
        }
        const std::string_view key = trimmed(line.substr(0, sign));
        const std::string_view value = trimmed(line.substr(sign + 1));
        std::string alias;
        if (key == "Name") {
            entry.name = value;
        } else if (key == "Exec" || key == "TryExec") {
            alias = program(value);
        } else if (key == "Icon") {
            alias = baseName(value);
        } else if (key == "StartupWMClass" || key.starts_with("Name[")) {
            alias = value;
        } else if (key == "X-Flatpak" || key == "X-SnapInstanceName") {
            alias = value;
            entry.isPackaged = true;
        }
        if (!alias.empty() &&
            std::find(entry.aliases.begin(), entry.aliases.end(), alias) == entry.aliases.end()) {
            entry.aliases.push_back(std::move(alias));
        }
    }
    return entry;
}

} // namespace korvane
