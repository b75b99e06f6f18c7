#pragma once

#include "Korvane/cleaning/PrivilegedRemover.h"
#include "Korvane/tools/Confirmation.h"
#include "KorvaneCore/platform/Elevation.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace korvane {

class Services;

/// What is about to be removed with administrator rights, for the user to confirm. From here on its
/// places are held: what is exchanged while the user reads is not removed.
struct PrivilegedRequest {
    PrivilegedRemover::Screening screening;
    /// Bytes of each accepted item; 0 for one that goes with another, and for a link.
    std::vector<std::int64_t> sizes;
};

/// The account of a removal with administrator rights.
struct PrivilegedRemoval {
    PrivilegedRemover::Result result;
    std::int64_t bytesReclaimed = 0;
    std::optional<std::string> auditFailure; ///< why it could not be recorded
};

/// Screens and measures. Never throws.
[[nodiscard]] PrivilegedRequest preparePrivilegedRemoval(std::span<const FileURL> urls,
                                                         Services& services);

[[nodiscard]] Confirmation makeConfirmation(const PrivilegedRequest& request,
                                            const Elevation& elevation);

/// Runs a confirmed request. Recorded in the audit log when anything went or the request completed.
[[nodiscard]] PrivilegedRemoval removeWithPrivileges(PrivilegedRequest request, Services& services,
                                                     Elevation& elevation = Elevation::standard());

} // namespace korvane
