#include "KorvaneCore/platform/PropertyList.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <utility>

#include <unicode/unistr.h>
#include <unicode/utf8.h>

namespace korvane {

namespace {

using Texts = std::map<std::string, std::string>;

// A made-up document can refer to one long text any number of times.
constexpr std::uint64_t mostMembers = 4096;
constexpr std::uint64_t longestText = 4096;

void appendCodePoint(std::string& text, std::uint32_t value) {
    if (value == 0 || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) {
        return;
    }
    std::array<char, 4> bytes{};
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes.data(), length, value);
    text.append(bytes.data(), length);
}

std::string withoutEntities(std::string_view text) {
    constexpr std::array<std::pair<std::string_view, char>, 5> named{
        {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};
    std::string plain;
    while (!text.empty()) {
        const std::size_t ampersand = std::min(text.find('&'), text.size());
        plain += text.substr(0, ampersand);
        text.remove_prefix(ampersand);
        const std::size_t end = text.find(';');
        if (text.empty() || end == std::string_view::npos) {
            plain += text;
            break;
        }
        const std::string_view entity = text.substr(1, end - 1);
        const auto* const known = std::find_if(named.begin(), named.end(),
                                               [&](const auto& n) { return n.first == entity; });
        if (known != named.end()) {
            plain += known->second;
        } else if (entity.starts_with('#')) {
            const bool isHex = entity.starts_with("#x");
            const std::string_view digits = entity.substr(isHex ? 2 : 1);
            std::uint32_t value = 0;
            std::from_chars(digits.data(), digits.data() + digits.size(), value, isHex ? 16 : 10);
            appendCodePoint(plain, value);
        }
        text.remove_prefix(end + 1);
    }
    return plain;
}

/// Reads <plist><dict><key>…</key><string>…</string>…: a pass over the tags that counts how deep it
/// is.
class XMLReader {
  public:
    explicit XMLReader(std::string_view document) : rest_(document) {}

    Texts read() {
        while (true) {
            const std::size_t tag = rest_.find('<');
            if (tag == std::string_view::npos) {
                return std::move(texts_);
            }
            text_ += withoutEntities(rest_.substr(0, tag));
            rest_.remove_prefix(tag);
            if (rest_.starts_with("<!--")) {
                take("-->");
            } else if (rest_.starts_with("<![CDATA[")) {
                const std::string_view section = take("]]>");
                text_ += section.substr(std::min<std::size_t>(9, section.size()));
            } else if (rest_.starts_with("<?")) {
                take("?>");
            } else if (rest_.starts_with("<!")) {
                take(rest_.substr(0, rest_.find('>')).find('[') == std::string_view::npos ? ">"
                                                                                          : "]>");
            } else {
                readTag(take(">").substr(1));
            }
        }
    }

  private:
    /// Everything up to the next `end`, which goes too.
    std::string_view take(std::string_view end) {
        const std::size_t length = std::min(rest_.find(end), rest_.size());
        const std::string_view taken = rest_.substr(0, length);
        rest_.remove_prefix(std::min(length + end.size(), rest_.size()));
        return taken;
    }

    void readTag(std::string_view tag) {
        const bool closes = tag.starts_with('/');
        const bool isEmpty = tag.ends_with('/');
        tag.remove_prefix(closes ? 1 : 0);
        const std::string_view name = tag.substr(0, tag.find_first_of(" \t\r\n/"));
        if (!closes) {
            ++depth_;
            text_.clear();
            isDictionary_ = depth_ == 2 ? name == "dict" : isDictionary_;
        }
        if (closes || isEmpty) {
            if (depth_ == 3 && isDictionary_) {
                endMember(name);
            }
            depth_ -= depth_ > 0 ? 1 : 0;
        }
    }

    void endMember(std::string_view name) {
        if (name == "key") {
            key_ = std::exchange(text_, {});
        } else {
            if (name == "string" && !key_.empty()) {
                texts_.emplace(key_, text_);
            }
            key_.clear();
        }
    }

    std::string_view rest_;
    std::size_t depth_ = 0;
    bool isDictionary_ = false;
    std::string text_;
    std::string key_;
    Texts texts_;
};

/// Reads the outermost dictionary of the binary form: a table of offsets at the end leads to the
/// objects, which refer to each other by number.
class BinaryReader {
  public:
    explicit BinaryReader(std::string_view document) : document_(document) {}

    Texts read() {
        constexpr std::size_t trailerSize = 32;
        if (document_.size() < trailerSize) {
            return {};
        }
        const std::size_t trailer = document_.size() - trailerSize;
        offsetSize_ = number(trailer + 6, 1).value_or(0);
        referenceSize_ = number(trailer + 7, 1).value_or(0);
        objectCount_ = number(trailer + 8, 8).value_or(0);
        table_ = number(trailer + 24, 8).value_or(0);
        const auto top = object(number(trailer + 16, 8).value_or(0));
        Texts texts;
        if (!top || top->type != 0xD || top->count > mostMembers) {
            return texts;
        }
        for (std::uint64_t i = 0; i < top->count; ++i) {
            const auto key = text(reference(*top, i));
            const auto value = text(reference(*top, top->count + i));
            if (key && value) {
                texts.emplace(*key, *value);
            }
        }
        return texts;
    }

  private:
    struct Object {
        std::uint64_t type = 0;
        std::uint64_t count = 0;
        std::uint64_t content = 0; ///< where its content begins
    };

    /// A big-endian number; nothing when it lies outside.
    [[nodiscard]] std::optional<std::uint64_t> number(std::uint64_t position,
                                                      std::uint64_t size) const {
        if (size == 0 || size > 8 || position > document_.size() ||
            size > document_.size() - position) {
            return std::nullopt;
        }
        std::uint64_t value = 0;
        for (const char byte : document_.substr(position, size)) {
            value = (value << 8U) | static_cast<unsigned char>(byte);
        }
        return value;
    }

    [[nodiscard]] std::optional<Object> object(std::optional<std::uint64_t> index) const {
        // Neither can be larger than the document; afterwards no product overflows.
        if (!index || *index >= objectCount_ || objectCount_ > document_.size() ||
            table_ > document_.size()) {
            return std::nullopt;
        }
        const auto position = number(table_ + *index * offsetSize_, offsetSize_);
        const auto marker = position ? number(*position, 1) : std::nullopt;
        if (!marker) {
            return std::nullopt;
        }
        Object object{*marker >> 4U, *marker & 0xFU, *position + 1};
        if (object.count == 0xF) {
            const auto sizeMarker = number(object.content, 1);
            const std::uint64_t size = sizeMarker ? 1ULL << (*sizeMarker & 0xFU) : 0;
            const auto count = number(object.content + 1, size);
            if (!count) {
                return std::nullopt;
            }
            object.count = *count;
            object.content += 1 + size;
        }
        return object.count <= document_.size() ? std::optional(object) : std::nullopt;
    }

    [[nodiscard]] std::optional<std::uint64_t> reference(const Object& dictionary,
                                                         std::uint64_t index) const {
        return number(dictionary.content + index * referenceSize_, referenceSize_);
    }

    [[nodiscard]] std::optional<std::string> text(std::optional<std::uint64_t> index) const {
        const auto found = object(index);
        const std::uint64_t unit = found && found->type == 0x6 ? 2 : 1;
        if (!found || (found->type != 0x5 && found->type != 0x6) || found->count > longestText ||
            found->count * unit > document_.size() - found->content) {
            return std::nullopt;
        }
        if (unit == 1) {
            return std::string(document_.substr(found->content, found->count));
        }
        icu::UnicodeString wide;
        for (std::uint64_t i = 0; i < found->count; ++i) {
            wide.append(static_cast<char16_t>(number(found->content + 2 * i, 2).value_or(0)));
        }
        std::string utf8;
        return wide.toUTF8String(utf8);
    }

    std::string_view document_;
    std::uint64_t offsetSize_ = 0;
    std::uint64_t referenceSize_ = 0;
    std::uint64_t objectCount_ = 0;
    std::uint64_t table_ = 0;
};

} // namespace

std::map<std::string, std::string> propertyListTexts(std::string_view document) {
    return document.starts_with("bplist") ? BinaryReader(document).read()
                                          : XMLReader(document).read();
}

} // namespace korvane
