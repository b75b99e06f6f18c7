#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace korvane {

/// Groups hashes that differ in few bits: each joins the first group from whose first member it
/// differs in at most `threshold` bits, else begins a group. So the order matters, and two members
/// of a group may differ by twice the threshold. Answers the groups in the order they began, each
/// the ascending numbers of its members, groups of one included.
[[nodiscard]] std::vector<std::vector<std::size_t>>
groupSimilarHashes(std::span<const std::uint64_t> hashes, int threshold);

} // namespace korvane
