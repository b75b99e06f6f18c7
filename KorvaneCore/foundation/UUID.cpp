#include "KorvaneCore/foundation/UUID.h"

#include "KorvaneCore/foundation/RandomBytes.h"

#include <cstring>

namespace korvane {

namespace {

bool isHyphenPosition(std::size_t index) {
    return index == 8 || index == 13 || index == 18 || index == 23;
}

int digit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// Random bytes fetched in blocks: a scan makes thousands of identities.
void takeRandom(std::array<std::uint8_t, 16>& bytes) {
    thread_local std::array<std::uint8_t, 1024> pool;
    thread_local std::size_t used = pool.size();
    if (used + bytes.size() > pool.size()) {
        fillRandom(pool);
        used = 0;
    }
    std::memcpy(bytes.data(), pool.data() + used, bytes.size());
    used += bytes.size();
}

} // namespace

UUID UUID::random() {
    UUID id;
    takeRandom(id.bytes_);
    id.bytes_[6] = static_cast<std::uint8_t>((id.bytes_[6] & 0x0FU) | 0x40U);
    id.bytes_[8] = static_cast<std::uint8_t>((id.bytes_[8] & 0x3FU) | 0x80U);
    return id;
}

std::optional<UUID> UUID::fromText(std::string_view text) {
    if (text.size() != 36) {
        return std::nullopt;
    }
    UUID id;
    std::size_t nibble = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isHyphenPosition(i)) {
            if (text[i] != '-') {
                return std::nullopt;
            }
            continue;
        }
        const int value = digit(text[i]);
        if (value < 0) {
            return std::nullopt;
        }
        std::uint8_t& byte = id.bytes_[nibble / 2];
        byte = static_cast<std::uint8_t>(byte * 16 + value);
        ++nibble;
    }
    return id;
}

std::string UUID::text() const {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    text.reserve(36);
    for (const std::uint8_t byte : bytes_) {
        if (isHyphenPosition(text.size())) {
            text += '-';
        }
        text += digits[byte >> 4U];
        text += digits[byte & 15U];
    }
    return text;
}

} // namespace korvane

std::size_t std::hash<korvane::UUID>::operator()(const korvane::UUID& id) const noexcept {
    std::size_t value = 0;
    std::memcpy(&value, id.bytes_.data(), sizeof value);
    return value;
}
