#pragma once

#include <cstdint>
#include <string>

namespace korvane::benchmarks {

/// Lays out a tree of exactly `entries` items below a new folder: 15 in 100 are folders, most of
/// them with a few files, every seventh with 20 to 40, at most 8 levels deep; file sizes from 0 to
/// 12 kB. The same seed makes the same tree. Throws FileError.
void makeTree(const std::string& folder, std::uint64_t entries, std::uint64_t seed);

/// Lays out a new folder of `count` small files. Throws FileError.
void makeFiles(const std::string& folder, std::uint64_t count);

} // namespace korvane::benchmarks
