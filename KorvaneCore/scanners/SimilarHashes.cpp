#include "KorvaneCore/scanners/SimilarHashes.h"

#include <bit>

namespace korvane {

namespace {

using Hashes = std::span<const std::uint64_t>;

[[gnu::always_inline]] inline std::size_t firstWithin(Hashes hashes, std::uint64_t hash,
                                                      int threshold) {
    for (std::size_t i = 0; i < hashes.size(); ++i) {
        if (std::popcount(hashes[i] ^ hash) <= threshold) {
            return i;
        }
    }
    return hashes.size();
}

std::size_t firstWithinPortable(Hashes hashes, std::uint64_t hash, int threshold) {
    return firstWithin(hashes, hash, threshold);
}

using Search = std::size_t (*)(Hashes, std::uint64_t, int);

#if defined(__x86_64__)
[[gnu::target("popcnt")]] std::size_t firstWithinCounting(Hashes hashes, std::uint64_t hash,
                                                          int threshold) {
    return firstWithin(hashes, hash, threshold);
}

// Every processor of the last fifteen years counts bits in one step, which the compiler may not
// rely on; without it this search is ten times as long.
Search fastestSearch() {
    return __builtin_cpu_supports("popcnt") != 0 ? firstWithinCounting : firstWithinPortable;
}
#else
Search fastestSearch() {
    return firstWithinPortable;
}
#endif

} // namespace

std::vector<std::vector<std::size_t>> groupSimilarHashes(Hashes hashes, int threshold) {
    const Search search = fastestSearch();
    std::vector<std::uint64_t> firsts;
    std::vector<std::vector<std::size_t>> groups;
    for (std::size_t i = 0; i < hashes.size(); ++i) {
        const std::size_t group = search(firsts, hashes[i], threshold);
        if (group == firsts.size()) {
            firsts.push_back(hashes[i]);
            groups.emplace_back();
        }
        groups[group].push_back(i);
    }
    return groups;
}

} // namespace korvane
