#include "Korvane/updater/WebAddress.h"

#include <algorithm>

namespace korvane {

namespace {

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string lowercase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return lower;
}

bool isPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) {
        return c > ' ' && c < '\x7F' &&
               std::string_view("\\\"<>^`{|}#").find(c) == std::string_view::npos;
    });
}

bool isPort(std::string_view text) {
    constexpr std::size_t mostDigits = 5;
    return !text.empty() && text.size() <= mostDigits &&
           std::all_of(text.begin(), text.end(), isDigit);
}

bool isHost(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return isLetter(c) || isDigit(c) || c == '.' || c == '-' || c == '_';
    });
}

} // namespace

std::optional<WebAddress> WebAddress::fromText(std::string_view text) {
    const std::size_t colon = text.find("://");
    if (!isPlain(text) || colon == 0 || colon == std::string_view::npos ||
        !std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(colon), isLetter)) {
        return std::nullopt;
    }
    std::string_view rest = text.substr(colon + 3);
    std::string_view authority = rest.substr(0, rest.find_first_of("/?"));
    rest.remove_prefix(authority.size());

    WebAddress address;
    address.text = text;
    address.scheme = lowercase(text.substr(0, colon));
    address.path = rest.substr(0, rest.find('?'));
    if (const std::size_t at = authority.rfind('@'); at != std::string_view::npos) {
        address.hasUser = true;
        authority.remove_prefix(at + 1);
    }
    if (const std::size_t port = authority.find(':'); port != std::string_view::npos) {
        if (!isPort(authority.substr(port + 1))) {
            return std::nullopt;
        }
        authority = authority.substr(0, port);
    }
    if (!isHost(authority)) {
        return std::nullopt;
    }
    address.host = lowercase(authority);
    return address;
}

bool WebAddress::isWithin(const WebAddress& origin) const {
    return scheme == "https" && !hasUser && host == origin.host;
}

} // namespace korvane
