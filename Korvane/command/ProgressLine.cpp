#include "Korvane/command/ProgressLine.h"

#include "Korvane/command/Terminal.h"
#include "KorvaneCore/foundation/Text.h"

#include <algorithm>
#include <cstdio>

#include <fmt/format.h>

namespace korvane {

namespace {

constexpr std::size_t barWidth = 20;
constexpr auto interval = std::chrono::milliseconds(50);

std::string bar(double fraction) {
    const double share = std::clamp(fraction, 0.0, 1.0);
    const auto filled = static_cast<std::size_t>(share * static_cast<double>(barWidth));
    return fmt::format("[{}{}] {:3.0f} %", std::string(filled, '#'),
                       std::string(barWidth - filled, '.'), share * 100);
}

} // namespace

ProgressLine::ProgressLine(bool wanted) : shown_(wanted && Terminal::isTerminal(stderr)) {}

ProgressLine::~ProgressLine() {
    clear();
}

void ProgressLine::report(std::string_view message, std::optional<double> fraction) {
    if (!shown_) {
        return;
    }
    const std::lock_guard guard(lock_);
    const auto now = std::chrono::steady_clock::now();
    if (drawn_ && now - lastDrawn_ < interval) {
        return;
    }
    lastDrawn_ = now;
    drawn_ = true;
    const std::string tail = fraction ? " " + bar(*fraction) : "";
    const std::size_t room = Terminal::width(stderr) - std::min<std::size_t>(tail.size() + 1, 40);
    std::string text = displayText(message);
    while (displayWidth(text) > room) {
        do {
            text.pop_back();
        } while (!isValidUTF8(text));
    }
    std::fputs(fmt::format("\r{}{}\x1B[K", text, tail).c_str(), stderr);
    std::fflush(stderr);
}

void ProgressLine::clear() {
    const std::lock_guard guard(lock_);
    if (drawn_) {
        std::fputs("\r\x1B[K", stderr);
        std::fflush(stderr);
        drawn_ = false;
    }
}

} // namespace korvane
