#include "Korvane/command/Terminal.h"

#include "KorvaneCore/foundation/Text.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include <sys/ioctl.h>
#include <unistd.h>

#include <fmt/format.h>

namespace korvane::Terminal {

bool isTerminal(std::FILE* stream) noexcept {
    return isatty(fileno(stream)) == 1;
}

std::size_t width(std::FILE* stream) noexcept {
    winsize size{};
    const bool known = ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col >= 20;
    return known ? size.ws_col : 80;
}

bool usesColour(std::FILE* stream) noexcept {
    const char* refused = std::getenv("NO_COLOR"); // NOLINT(concurrency-mt-unsafe)
    return isTerminal(stream) && (refused == nullptr || refused[0] == '\0');
}

void print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

void printLine(std::string_view text) {
    print(text);
    print("\n");
}

void note(std::string_view sentence) {
    const std::string line = fmt::format("korvane: {}\n", sentence);
    std::fwrite(line.data(), 1, line.size(), stderr);
}

bool flushOutput() {
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

std::string styled(std::string_view text, Style style) {
    constexpr std::array<std::string_view, 6> codes = {"0", "1", "2", "31", "32", "33"};
    if (style == Style::plain || !usesColour(stdout)) {
        return std::string(text);
    }
    return fmt::format("\x1B[{}m{}\x1B[0m", codes.at(static_cast<std::size_t>(style)), text);
}

std::string padRight(std::string_view text, std::size_t columns) {
    const std::size_t taken = displayWidth(text);
    return std::string(text) + std::string(columns > taken ? columns - taken : 0, ' ');
}

std::string padLeft(std::string_view text, std::size_t columns) {
    const std::size_t taken = displayWidth(text);
    return std::string(columns > taken ? columns - taken : 0, ' ') + std::string(text);
}

std::string wrapped(std::string_view text, std::size_t indent, std::size_t columns) {
    std::string result;
    std::string line;
    const auto endLine = [&] {
        result += std::string(indent, ' ') + line + "\n";
        line.clear();
    };
    while (!text.empty()) {
        const std::size_t blank = std::min(text.find(' '), text.size());
        const std::string_view word = text.substr(0, blank);
        if (!line.empty() && indent + displayWidth(line) + 1 + displayWidth(word) > columns) {
            endLine();
        }
        line += line.empty() ? "" : " ";
        line += word;
        text.remove_prefix(std::min(blank + 1, text.size()));
    }
    endLine();
    return result;
}

std::string counted(std::size_t count, std::string_view noun) {
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

} // namespace korvane::Terminal
