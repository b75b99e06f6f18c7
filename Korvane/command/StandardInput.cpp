#include "Korvane/command/StandardInput.h"

#include "Korvane/command/Interrupt.h"
#include "KorvaneCore/foundation/FileError.h"

#include <array>
#include <cerrno>

#include <unistd.h>

#include <fmt/format.h>

namespace korvane {

namespace {

/// Reads until the end or until `enough` says so.
template <typename Enough>
std::string readUntil(Enough enough) {
    std::string text;
    std::array<char, 65536> buffer{};
    while (!Interrupt::happened()) {
        const ssize_t got = read(STDIN_FILENO, buffer.data(), buffer.size());
        if (got < 0 && errno != EINTR) {
            throw FileError(errno, "read", "the standard input");
        }
        if (got == 0) {
            break;
        }
        text.append(buffer.data(), got > 0 ? static_cast<std::size_t>(got) : 0);
        if (enough(text)) {
            break;
        }
    }
    return text;
}

} // namespace

std::string readStandardInput() {
    return readUntil([](const std::string&) { return false; });
}

std::string readLine() {
    std::string text =
        readUntil([](const std::string& so) { return so.find('\n') != std::string::npos; });
    text.resize(std::min(text.find('\n'), text.size()));
    return Interrupt::happened() ? "" : text;
}

bool answersYes(std::string_view action) {
    std::fputs(fmt::format("{}? [y/N] ", action).c_str(), stderr);
    std::fflush(stderr);
    const std::string answer = readLine();
    return answer == "y" || answer == "Y" || answer == "yes";
}

} // namespace korvane
