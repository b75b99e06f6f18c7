#include "Korvane/updater/UpdaterConfiguration.h"

#include "KorvaneCore/platform/RunningSystem.h"

#include <chrono>
#include <cstdlib>

namespace korvane {

namespace {

constexpr std::int64_t feedBytes = 1024LL * 1024;
constexpr std::int64_t imageBytes = 4LL * 1024 * 1024 * 1024;
constexpr std::chrono::seconds feedTime{30};

} // namespace

UpdaterConfiguration UpdaterConfiguration::standard(const UserFolders& folders) {
    UpdaterConfiguration configuration;
    configuration.feedURL = "https://" KORVANE_UPDATE_HOST "/korvane/appcast.json";
    configuration.runningVersion = KORVANE_VERSION;
    configuration.systemVersion = korvane::systemVersion();
    configuration.bundle = AppBundle::holding(runningExecutable());
    configuration.requirement.teamIdentifier = KORVANE_TEAM_IDENTIFIER;
    if (configuration.bundle) {
        configuration.runningVersion = configuration.bundle->version;
        configuration.requirement.rootCertificates =
            configuration.bundle->location.appending("Contents/Resources/update-root.pem");
    }
    // The program sets no variable after its start, so reading one is safe on any thread.
    const char* certificates = std::getenv("SSL_CERT_FILE"); // NOLINT(concurrency-mt-unsafe)
    if (certificates != nullptr && certificates[0] != '\0') {
        configuration.certificates = FileURL(certificates);
    }
    configuration.temporary = folders.temporary;
    configuration.downloads = folders.home.appending("Downloads");
    configuration.feedLimits.bytes = feedBytes;
    configuration.feedLimits.everything = feedTime;
    configuration.imageLimits.bytes = imageBytes;
    return configuration;
}

} // namespace korvane
