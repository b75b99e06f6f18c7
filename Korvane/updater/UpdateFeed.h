#pragma once

#include "Korvane/updater/UpdateRelease.h"
#include "Korvane/updater/WebAddress.h"

#include <string_view>

namespace korvane {

/// Reads the body of the feed: one JSON object. Throws UpdateError when it has not the form it
/// should have, or when the image is not on the host of the feed itself.
[[nodiscard]] UpdateRelease parseUpdateFeed(std::string_view body, const WebAddress& feed);

/// The address of a release's image. Throws UpdateError unless it is https on the feed's own host.
[[nodiscard]] WebAddress imageAddress(const UpdateRelease& release, const WebAddress& feed);

} // namespace korvane
