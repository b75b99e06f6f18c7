#include "KorvaneCore/scan/PathHeuristics.h"

#include "KorvaneCore/scan/PathHeuristicRows.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace korvane::PathHeuristics {

namespace {

constexpr std::array<const PathHeuristic*, 98> catalogue{&attachmentsMail,
                                                         &attachmentsMessages,
                                                         &cacheUser,
                                                         &cacheLogs,
                                                         &devXcodeDerivedData,
                                                         &devXcodeDerivedDataStale,
                                                         &devXcodeDerivedDataActive,
                                                         &devXcodeArchives,
                                                         &devXcodeIosDeviceSupport,
                                                         &devXcodeIosDeviceSupportSuperseded,
                                                         &devXcodeIosDeviceSupportCurrent,
                                                         &devXcodeWatchosDeviceSupport,
                                                         &devXcodeTvosDeviceSupport,
                                                         &devGoBuildCache,
                                                         &devGoModuleCache,
                                                         &devXcodeCoresimulatorCaches,
                                                         &devCarthageCache,
                                                         &devHomebrewCache,
                                                         &devDockerOverlay,
                                                         &devCocoapodsCache,
                                                         &devGradleCache,
                                                         &devMavenRepo,
                                                         &devCargoCache,
                                                         &devVscodeCache,
                                                         &devVscodeCachedData,
                                                         &devCursorCache,
                                                         &devJetbrainsCache,
                                                         &devNodeModules,
                                                         &devPythonVenv,
                                                         &mailDownloads,
                                                         &iosFirmwareUpdates,
                                                         &mediaSpotifyCache,
                                                         &mediaSpotifyPersistent,
                                                         &mediaAppleMusicCache,
                                                         &mediaAppleTvCache,
                                                         &mediaPodcastsCache,
                                                         &chatSlackCache,
                                                         &chatSlackServiceWorker,
                                                         &chatDiscordCache,
                                                         &chatTeamsCache,
                                                         &systemDiagnosticReports,
                                                         &systemSavedAppState,
                                                         &systemQuicklookCache,
                                                         &iosDeviceBackups,
                                                         &uninstallAppSupport,
                                                         &uninstallPreferences,
                                                         &uninstallLaunchAgents,
                                                         &uninstallCrashLogs,
                                                         &uninstallAppScripts,
                                                         &uninstallCookies,
                                                         &systemTimeMachineSnapshots,
                                                         &systemTrashAllVolumes,
                                                         &oldFilesDownloads,
                                                         &oldFilesScreenshots,
                                                         &oldFilesXcodeArchives,
                                                         &largeFilesUserSelected,
                                                         &developerSimulatorDevices,
                                                         &developerSimulatorRuntimes,
                                                         &developerNpmCache,
                                                         &developerYarnCache,
                                                         &developerYarnBerryCache,
                                                         &developerPnpmStore,
                                                         &developerSwiftuiPreviews,
                                                         &developerPipCache,
                                                         &developerGemCache,
                                                         &developerBundlerCache,
                                                         &orphanedAppSupport,
                                                         &orphanedContainers,
                                                         &orphanedGroupContainers,
                                                         &duplicateFinderDuplicate,
                                                         &downloadsAllFiles,
                                                         &icloudLocalCopies,
                                                         &similarImagesNearDuplicate,
                                                         &browserSafariCache,
                                                         &browserChromeCache,
                                                         &browserFirefoxCache,
                                                         &browserBraveCache,
                                                         &browserArcCache,
                                                         &browserEdgeCache,
                                                         &browserOperaCache,
                                                         &browserVivaldiCache,
                                                         &aiOllamaModels,
                                                         &aiHuggingfaceHub,
                                                         &aiLmstudioModels,
                                                         &aiLmstudioLegacyModels,
                                                         &aiGpt4allModels,
                                                         &aiDiffusionbeeModels,
                                                         &mediaAdobeMediaCacheFiles,
                                                         &mediaAdobeMediaCache,
                                                         &systemAppleIntelligence,
                                                         &systemAppleIntelligenceUser,
                                                         &systemGaragebandUserSounds,
                                                         &systemAudioMusicApps,
                                                         &systemMessagesAttachments,
                                                         &systemParallelsVms,
                                                         &systemVmwareVms,
                                                         &systemOrbstackData,
                                                         &systemLimaVms};

} // namespace

std::span<const PathHeuristic* const> all() noexcept {
    return catalogue;
}

const PathHeuristic* heuristic(std::string_view id) noexcept {
    const auto found = std::find_if(catalogue.begin(), catalogue.end(),
                                    [&](const PathHeuristic* row) { return row->id == id; });
    return found == catalogue.end() ? nullptr : *found;
}

std::vector<const PathHeuristic*> heuristics(std::string_view scannerID) {
    std::vector<const PathHeuristic*> rows;
    std::copy_if(catalogue.begin(), catalogue.end(), std::back_inserter(rows),
                 [&](const PathHeuristic* row) { return row->scannerID == scannerID; });
    return rows;
}

} // namespace korvane::PathHeuristics
