#pragma once

#include <cstdint>
#include <string>

namespace korvane::benchmarks {

/// Lays out a new folder of `count` files of `bytes` random bytes each, 200 a folder; 30 in 100
/// are copies of the file before. The same arguments make the same data. Throws FileError.
void makeCopies(const std::string& folder, std::uint64_t count, std::uint64_t bytes);

} // namespace korvane::benchmarks
