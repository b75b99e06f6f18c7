#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace korvane {

using Digest256 = std::array<std::uint8_t, 32>;
using Key256 = std::array<std::uint8_t, 32>;

/// SHA-256 (FIPS 180-4) over bytes given in pieces. One object may be used for many messages, one
/// after another; it is not shared between threads.
class SHA256 {
  public:
    SHA256();
    ~SHA256();
    SHA256(SHA256&&) noexcept;
    SHA256& operator=(SHA256&&) noexcept;

    void update(std::span<const std::byte> bytes);

    /// The digest of everything since the start or the last `finish`; starts afresh afterwards.
    [[nodiscard]] Digest256 finish();

  private:
    struct Context;
    std::unique_ptr<Context> context_;
};

/// HMAC-SHA256 (RFC 2104) under one key, for any number of messages. Not shared between threads.
class HMACSHA256 {
  public:
    explicit HMACSHA256(const Key256& key);
    ~HMACSHA256();
    HMACSHA256(HMACSHA256&&) noexcept;
    HMACSHA256& operator=(HMACSHA256&&) noexcept;

    [[nodiscard]] Digest256 authenticate(std::string_view message);

  private:
    struct Context;
    std::unique_ptr<Context> context_;
};

/// A key from the system's cryptographic generator. Throws std::system_error when it has none.
[[nodiscard]] Key256 randomKey256();

/// Two lower-case hexadecimal digits a byte.
[[nodiscard]] std::string hexText(std::span<const std::uint8_t> bytes);

} // namespace korvane
