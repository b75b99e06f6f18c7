#include "Korvane/updater/VersionNumber.h"

#include <algorithm>

namespace korvane {

namespace {

constexpr std::string_view digits = "0123456789";

/// Takes the next number off the text, without its leading zeros.
std::string_view takeNumber(std::string_view& text) {
    std::string_view number = text.substr(0, text.find_first_not_of(digits));
    text.remove_prefix(number.size());
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    if (text.starts_with('.')) {
        text.remove_prefix(1);
    }
    return number;
}

bool beginsWithNumber(std::string_view text) {
    return !text.empty() && digits.find(text.front()) != std::string_view::npos;
}

} // namespace

std::strong_ordering compareVersions(std::string_view a, std::string_view b) {
    while (beginsWithNumber(a) || beginsWithNumber(b)) {
        const std::string_view left = takeNumber(a);
        const std::string_view right = takeNumber(b);
        if (const auto order = left.size() <=> right.size(); std::is_neq(order)) {
            return order;
        }
        if (const auto order = left <=> right; std::is_neq(order)) {
            return order;
        }
    }
    if (a.empty() != b.empty()) {
        return a.empty() ? std::strong_ordering::greater : std::strong_ordering::less;
    }
    return a <=> b;
}

bool isVersion(std::string_view text) noexcept {
    constexpr std::size_t longest = 64;
    return text.size() <= longest && beginsWithNumber(text) &&
           std::all_of(text.begin(), text.end(), [](char c) {
               return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                      c == '.' || c == '-' || c == '+' || c == '_';
           });
}

} // namespace korvane
