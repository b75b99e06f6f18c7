#pragma once

#include <cstdint>
#include <span>

namespace korvane {

/// Fills from the system's cryptographic generator. Throws std::system_error when it has none. Any
/// thread.
void fillRandom(std::span<std::uint8_t> bytes);

} // namespace korvane
