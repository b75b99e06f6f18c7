#include "KorvaneCore/scanners/InstalledNames.h"

#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scanners/ReservedNames.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace korvane {

namespace {

// Shorter beginnings are alike by chance.
constexpr std::size_t shortestBeginning = 4;

// Parts of identifiers that say nothing about whose they are.
constexpr std::array<std::string_view, 16> genericParts{
    "agent", "app",    "application", "beta", "browser", "client", "desktop", "editor",
    "free",  "helper", "linux",       "mac",  "macos",   "main",   "osx",     "player"};
// Where identifiers are given out under the name of the place; the maker's comes third.
constexpr std::array<std::string_view, 6> hosts{"bitbucket", "codeberg", "github",
                                                "gitlab",    "gitee",    "sourceforge"};

template <std::size_t count>
bool isOneOf(std::string_view text, const std::array<std::string_view, count>& list) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

std::vector<std::string_view> partsOf(std::string_view identifier) {
    std::vector<std::string_view> parts;
    while (!identifier.empty()) {
        const std::string_view part = identifier.substr(0, identifier.find('.'));
        identifier.remove_prefix(std::min(part.size() + 1, identifier.size()));
        if (!part.empty()) {
            parts.push_back(part);
        }
    }
    return parts;
}

bool separates(char c) {
    return c == '.' || c == '-' || c == '_' || c == ' ';
}

/// A key without what people and programs put differently around words: letters and digits only.
std::string squashed(std::string_view key) {
    const icu::UnicodeString whole = icu::UnicodeString::fromUTF8(
        icu::StringPiece(key.data(), static_cast<std::int32_t>(key.size())));
    icu::UnicodeString kept;
    for (std::int32_t i = 0; i < whole.length(); i = whole.moveIndex32(i, 1)) {
        const UChar32 character = whole.char32At(i);
        if (u_isalnum(character) != 0 || u_getCombiningClass(character) != 0) {
            kept.append(character);
        }
    }
    std::string text;
    return kept.toUTF8String(text);
}

/// Whether a key is built like "com.vendor.app", and not like "tool-1.2.3" or "Dr. No vs. Who".
bool isIdentifier(std::string_view key, const std::vector<std::string_view>& parts) {
    const auto isIn = [](std::string_view text, std::string_view characters) {
        return text.find_first_not_of(characters) == std::string_view::npos;
    };
    return parts.size() >= 3 && key.find(' ') == std::string_view::npos &&
           isIn(parts.front(), "abcdefghijklmnopqrstuvwxyz") &&
           std::none_of(parts.begin(), parts.end(),
                        [&](std::string_view part) { return isIn(part, "0123456789"); });
}

/// The part of an identifier that stands for its maker, "com.vendor"; empty when it has none.
std::string family(std::string_view identifier) {
    const std::vector<std::string_view> parts = partsOf(identifier);
    const std::size_t length = parts.size() > 1 && isOneOf(parts[1], hosts) ? 3 : 2;
    if (parts.size() < length) {
        return {};
    }
    std::string text;
    for (std::size_t i = 0; i < length; ++i) {
        text += '.';
        text += parts[i];
    }
    return text;
}

} // namespace

InstalledNames::InstalledNames(std::span<const InstalledApplication> applications) {
    for (const InstalledApplication& application : applications) {
        add(application.identifier);
        add(application.name);
        add(application.executable);
        for (const std::string& alias : application.aliases) {
            add(alias);
        }
    }
    names_.erase("");
    families_.erase("");
}

void InstalledNames::add(std::string_view text) {
    for (const std::string& key : folderKeys(text)) {
        const std::vector<std::string_view> parts = partsOf(key);
        if (!isIdentifier(key, parts)) {
            names_.insert(squashed(key));
        }
        if (parts.size() < 2) {
            continue;
        }
        identifiers_.insert(key);
        families_.insert(family(key));
        // The first part is "com" or its like.
        for (std::size_t i = 1; i < parts.size(); ++i) {
            if (!isOneOf(parts[i], genericParts) && !isOneOf(parts[i], hosts)) {
                names_.insert(squashed(parts[i]));
            }
        }
    }
}

bool InstalledNames::mayOwn(std::string_view folderName) const {
    const std::vector<std::string> keys = folderKeys(folderName);
    return std::any_of(keys.begin(), keys.end(), [this](const std::string& key) {
        const std::vector<std::string_view> parts = partsOf(key);
        const bool isNameKnown =
            isIdentifier(key, parts)
                ? !isOneOf(parts.back(), genericParts) && names_.contains(squashed(parts.back()))
                : hasNameLike(squashed(key));
        return isNameKnown || hasIdentifierLike(key);
    });
}

bool InstalledNames::mayShare(std::string_view folderName) const {
    const std::vector<std::string> keys = folderKeys(folderName);
    return mayOwn(folderName) || std::any_of(keys.begin(), keys.end(), [this](const auto& key) {
               return families_.contains(family(key));
           });
}

bool InstalledNames::isKnown(std::string_view fileName) const {
    const std::string key = composedLowercase(fileName);
    return identifiers_.contains(key) || names_.contains(squashed(key));
}

// Whether the key is an installed identifier, lies below one, or is what one lies below.
bool InstalledNames::hasIdentifierLike(const std::string& key) const {
    for (std::size_t i = 1; i <= key.size(); ++i) {
        if ((i == key.size() || separates(key[i])) && identifiers_.contains(key.substr(0, i))) {
            return true;
        }
    }
    for (auto it = identifiers_.lower_bound(key);
         key.find('.') != std::string::npos && it != identifiers_.end() && it->starts_with(key);
         ++it) {
        if (it->size() == key.size() || separates((*it)[key.size()])) {
            return true;
        }
    }
    return false;
}

// Whether the key is a known name, begins with one, or one begins with it. An empty key says
// nothing, so it may be anyone's.
bool InstalledNames::hasNameLike(std::string_view key) const {
    if (key.empty() || names_.contains(std::string(key))) {
        return true;
    }
    for (std::size_t i = shortestBeginning; i < key.size(); ++i) {
        if (names_.contains(std::string(key.substr(0, i)))) {
            return true;
        }
    }
    const auto next = names_.lower_bound(std::string(key));
    return key.size() >= shortestBeginning && next != names_.end() && next->starts_with(key);
}

} // namespace korvane
