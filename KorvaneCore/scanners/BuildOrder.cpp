#include "KorvaneCore/scanners/BuildOrder.h"

#include <algorithm>

namespace korvane {

namespace {

bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

/// The first word that begins with a digit; empty when there is none.
std::string_view version(std::string_view name) noexcept {
    while (!name.empty()) {
        const std::string_view word = name.substr(0, name.find(' '));
        if (!word.empty() && isDigit(word.front())) {
            return word;
        }
        name.remove_prefix(std::min(word.size() + 1, name.size()));
    }
    return {};
}

std::string_view build(std::string_view name) noexcept {
    const std::size_t open = name.find('(');
    if (open == std::string_view::npos) {
        return {};
    }
    return name.substr(open + 1, name.find(')', open) - open - 1);
}

/// Takes a run of digits off the front, leading zeros dropped.
std::string_view takeNumber(std::string_view& text) noexcept {
    std::size_t length = 0;
    while (length < text.size() && isDigit(text[length])) {
        ++length;
    }
    std::string_view number = text.substr(0, length);
    text.remove_prefix(length);
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    return number;
}

int sign(int comparison) noexcept {
    return (comparison > 0) - (comparison < 0);
}

int compareNumerically(std::string_view a, std::string_view b) noexcept {
    while (!a.empty() && !b.empty()) {
        int order = 0;
        if (isDigit(a.front()) && isDigit(b.front())) {
            const std::string_view left = takeNumber(a);
            const std::string_view right = takeNumber(b);
            order = left.size() != right.size() ? (left.size() < right.size() ? -1 : 1)
                                                : sign(left.compare(right));
        } else {
            order = (a.front() > b.front()) - (a.front() < b.front());
            a.remove_prefix(1);
            b.remove_prefix(1);
        }
        if (order != 0) {
            return order;
        }
    }
    return static_cast<int>(b.empty()) - static_cast<int>(a.empty());
}

} // namespace

int compareBuilds(std::string_view a, std::string_view b) noexcept {
    const int order = compareNumerically(version(a), version(b));
    return order != 0 ? order : compareNumerically(build(a), build(b));
}

} // namespace korvane
