#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// A 128-bit identity (RFC 4122). Default-constructed: all zero.
class UUID {
  public:
    UUID() = default;

    /// A fresh version 4 value. Any thread.
    [[nodiscard]] static UUID random();

    /// Reads the 36-character form in either case; anything else gives nothing.
    [[nodiscard]] static std::optional<UUID> fromText(std::string_view text);

    /// Upper-case hexadecimal with hyphens, 36 characters.
    [[nodiscard]] std::string text() const;

    friend auto operator<=>(const UUID&, const UUID&) = default;
    friend struct std::hash<UUID>;

  private:
    std::array<std::uint8_t, 16> bytes_{};
};

} // namespace korvane

template <>
struct std::hash<korvane::UUID> {
    std::size_t operator()(const korvane::UUID& id) const noexcept;
};
