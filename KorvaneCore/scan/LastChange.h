#pragma once

#include "KorvaneCore/foundation/Date.h"
#include "KorvaneCore/foundation/FileURL.h"

namespace korvane {

/// Whether a file, or a folder with everything below it (hidden things too, links not followed),
/// was last changed before `moment`. Something that cannot be read counts as changed just now, so
/// that nobody calls old what he could not look at; so does a cancelled task. Any thread.
[[nodiscard]] bool unchangedSince(const FileURL& place, const Date& moment);

} // namespace korvane
