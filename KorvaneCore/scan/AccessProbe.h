#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <string>
#include <vector>

namespace korvane {

/// A location of the catalogue that is there and cannot be read.
struct AccessProblem {
    std::string id; ///< of the catalogue's row
    FileURL url;
    std::string error; ///< the platform's text

    friend bool operator==(const AccessProblem&, const AccessProblem&) = default;
};

/// Tries every location of the catalogue, in its order. What scans find is incomplete as long as
/// there are any such. Any thread.
[[nodiscard]] std::vector<AccessProblem> probeAccess(const FileURL& home);

} // namespace korvane
