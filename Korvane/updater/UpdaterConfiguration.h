#pragma once

#include "Korvane/updater/AppBundle.h"
#include "Korvane/updater/BundleSignature.h"
#include "Korvane/updater/HTTPSDownload.h"
#include "KorvaneCore/platform/UserFolders.h"

#include <optional>
#include <string>

namespace korvane {

/// What an update depends on outside itself.
struct UpdaterConfiguration {
    std::string feedURL;
    std::string runningVersion;
    std::string systemVersion;
    std::optional<AppBundle> bundle; ///< the running one; none: nothing can be installed
    SigningRequirement requirement{};
    std::optional<FileURL> certificates{}; ///< trusted for https instead of the system's
    FileURL temporary;
    FileURL downloads;
    HTTPSDownload::Limits feedLimits;
    HTTPSDownload::Limits imageLimits;

    /// That of the running program: the feed and the team of the build, the bundle around the
    /// program, whose Contents/Resources/update-root.pem is what signers must lead to, and the
    /// environment's `SSL_CERT_FILE`.
    [[nodiscard]] static UpdaterConfiguration standard(const UserFolders& folders);
};

} // namespace korvane
