#pragma once

#include <cstdint>
#include <string>

/// How byte counts read, everywhere: decimal units, 1 GB = 10^9 bytes.
namespace korvane::ByteDisplay {

/// "0 bytes", "1 byte", "532 KB", "12.3 MB", "1.2 GB", "12 GB".
[[nodiscard]] std::string format(std::int64_t bytes);

/// As `format`, with "nothing" below 1: for sentences that report an amount freed.
[[nodiscard]] std::string formatAmount(std::int64_t bytes);

} // namespace korvane::ByteDisplay
