#include "KorvaneCore/foundation/Text.h"

#include <algorithm>
#include <cstdint>

#include <fmt/format.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace korvane {

namespace {

struct CodePoint {
    char32_t value = 0;
    std::size_t length = 0; ///< bytes; 0 when the text does not begin with valid UTF-8
};

/// The first code point of a non-empty text. Overlong forms, surrogates and values beyond Unicode
/// are not valid.
CodePoint firstCodePoint(std::string_view text) noexcept {
    const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80) {
        return {lead, 1};
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) {
        return {};
    }
    char32_t value = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) {
            return {};
        }
        value = (value << 6U) | (byte(i) & 0x3FU);
    }
    const bool valid =
        value >= smallest[length] && value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
    return valid ? CodePoint{value, length} : CodePoint{};
}

bool isASCII(std::string_view text) noexcept {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isInvisible(char32_t c) {
    switch (u_charType(static_cast<UChar32>(c))) {
    case U_FORMAT_CHAR:
        return c != 0x200D && c != 0x200C; // joiners shape letters and emoji
    case U_CONTROL_CHAR:
    case U_LINE_SEPARATOR:
    case U_PARAGRAPH_SEPARATOR:
        return true;
    default:
        return false;
    }
}

std::string escaped(unsigned char byte) {
    switch (byte) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        return fmt::format("\\x{:02X}", byte);
    }
}

std::string composedLowercaseOfValid(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* nfc = icu::Normalizer2::getNFCInstance(status);
    icu::UnicodeString wide = icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
    if (U_SUCCESS(status)) {
        wide = nfc->normalize(wide, status);
    }
    std::string result;
    wide.toLower(icu::Locale::getRoot()).toUTF8String(result);
    return result;
}

} // namespace

bool isValidUTF8(std::string_view text) noexcept {
    while (!text.empty()) {
        const CodePoint point = firstCodePoint(text);
        if (point.length == 0) {
            return false;
        }
        text.remove_prefix(point.length);
    }
    return true;
}

std::string displayText(std::string_view bytes) {
    std::string shown;
    shown.reserve(bytes.size());
    while (!bytes.empty()) {
        const CodePoint point = firstCodePoint(bytes);
        const std::size_t length = std::max<std::size_t>(point.length, 1);
        const auto lead = static_cast<unsigned char>(bytes.front());
        if (point.length == 0 || lead < 0x20 || lead == 0x7F) {
            shown += escaped(lead);
        } else if (point.length > 1 && isInvisible(point.value)) {
            shown += fmt::format("\\u{{{:04X}}}", static_cast<std::uint32_t>(point.value));
        } else {
            shown += bytes.substr(0, length);
        }
        bytes.remove_prefix(length);
    }
    return shown;
}

std::string composedLowercase(std::string_view text) {
    if (isASCII(text)) {
        std::string lower(text);
        for (char& c : lower) {
            c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
        }
        return lower;
    }
    std::string result;
    while (!text.empty()) {
        std::size_t valid = 0;
        while (valid < text.size()) {
            const std::size_t length = firstCodePoint(text.substr(valid)).length;
            if (length == 0) {
                break;
            }
            valid += length;
        }
        result += composedLowercaseOfValid(text.substr(0, valid));
        text.remove_prefix(valid);
        if (!text.empty()) {
            result += text.front();
            text.remove_prefix(1);
        }
    }
    return result;
}

std::size_t displayWidth(std::string_view utf8) noexcept {
    std::size_t width = 0;
    while (!utf8.empty()) {
        const CodePoint point = firstCodePoint(utf8);
        const auto c = static_cast<UChar32>(point.value);
        const auto type = u_charType(c);
        const bool combining =
            type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_FORMAT_CHAR;
        const int eastAsian = u_getIntPropertyValue(c, UCHAR_EAST_ASIAN_WIDTH);
        const bool wide = eastAsian == U_EA_WIDE || eastAsian == U_EA_FULLWIDTH;
        if (!combining || point.length == 0) {
            width += wide ? 2 : 1;
        }
        utf8.remove_prefix(std::max<std::size_t>(point.length, 1));
    }
    return width;
}

} // namespace korvane
