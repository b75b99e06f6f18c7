#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <cstdint>

namespace korvane::benchmarks {

/// Writes a whole, unbroken audit log of `entries` cleanups, a thousand a day, below an Application
/// Support folder, and its key into the secrets folder there. Throws FileError.
void makeAuditLog(const FileURL& applicationSupport, std::uint64_t entries);

} // namespace korvane::benchmarks
