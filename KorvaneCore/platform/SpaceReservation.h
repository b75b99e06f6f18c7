#pragma once

#include <cstdint>

namespace korvane {

/// Takes `length` bytes of disk space for an open file from `offset` on, without changing its size,
/// so that writing them cannot stop half-way because the disk is full. 0 when the space is there or
/// the file system cannot say beforehand; else the error number (ENOSPC, EDQUOT…). Any thread.
[[nodiscard]] int reserveSpace(int descriptor, std::int64_t offset, std::int64_t length) noexcept;

} // namespace korvane
