#pragma once

#include "KorvaneCore/scan/PathHeuristic.h"

/// The rows of the catalogue, in its order; named after their ids.
namespace korvane::PathHeuristics {

// clang-format off

inline constexpr PathHeuristic attachmentsMail{
    .id = "attachments.mail", .category = "Mail Downloads", .displayName = "Mail download",
    .pathPattern = "~/Library/Containers/com.apple.mail/Data/Library/Mail Downloads",
    .risk = HeuristicRisk::medium,
    .whySafe = "Copies of email attachments you've opened. They re-download when you open the "
               "message again - as long as the message is still in your mailbox.",
    .scannerID = "attachments"};

inline constexpr PathHeuristic attachmentsMessages{
    .id = "attachments.messages", .category = "Messages Attachments",
    .displayName = "Message attachment",
    .pathPattern = "~/Library/Messages/Attachments",
    .risk = HeuristicRisk::high,
    .whySafe = "Photos and files received in Messages. Removing them deletes them from those "
               "conversations. With Messages in iCloud they may re-download; otherwise removal is "
               "permanent for that chat. Review carefully.",
    .scannerID = "attachments"};

inline constexpr PathHeuristic cacheUser{
    .id = "cache.user", .category = "User Caches", .displayName = "User Cache",
    .pathPattern = "~/Library/Caches",
    .risk = HeuristicRisk::low,
    .whySafe = "Apps regenerate their caches on next launch. Removing this never destroys "
               "preferences or documents.",
    .scannerID = "cache-cleaner", .enumerateChildren = true};

inline constexpr PathHeuristic cacheLogs{
    .id = "cache.logs", .category = "Logs", .displayName = "User Logs",
    .pathPattern = "~/Library/Logs",
    .risk = HeuristicRisk::low,
    .whySafe = "Diagnostic logs from apps you've run. Useful for debugging if something is "
               "currently broken - otherwise safe to clear.",
    .scannerID = "cache-cleaner", .enumerateChildren = true};

inline constexpr PathHeuristic devXcodeDerivedData{
    .id = "dev.xcode.derived-data", .category = "Developer · Xcode",
    .displayName = "Xcode DerivedData",
    .pathPattern = "~/Library/Developer/Xcode/DerivedData",
    .risk = HeuristicRisk::low,
    .whySafe = "Build intermediates and indexes. Xcode rebuilds them on next compile. Often the "
               "largest single reclaimable folder on a developer's machine.",
    .scannerID = "cache-cleaner", .enumerateChildren = true};

inline constexpr PathHeuristic devXcodeDerivedDataStale{
    .id = "dev.xcode.derived-data.stale", .category = "Developer · Xcode",
    .displayName = "DerivedData · dormant project",
    .pathPattern = "~/Library/Developer/Xcode/DerivedData/<project>",
    .risk = HeuristicRisk::low,
    .whySafe = "Build data for a project you haven't opened in over a month. Xcode rebuilds it "
               "the next time you do, and nothing in it is source.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devXcodeDerivedDataActive{
    .id = "dev.xcode.derived-data.active", .category = "Developer · Xcode",
    .displayName = "DerivedData · recent project",
    .pathPattern = "~/Library/Developer/Xcode/DerivedData/<project>",
    .risk = HeuristicRisk::medium,
    .whySafe = "Build data for a project you've worked on in the last month. Safe to delete, but "
               "the next build starts from scratch - so Korvane leaves it unticked.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devXcodeArchives{
    .id = "dev.xcode.archives", .category = "Developer · Xcode", .displayName = "Xcode Archives",
    .pathPattern = "~/Library/Developer/Xcode/Archives",
    .risk = HeuristicRisk::high,
    .whySafe = "Archives of past app builds - needed to symbolicate crash reports for shipped "
               "builds. Korvane defaults to NOT selecting these; review individually.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devXcodeIosDeviceSupport{
    .id = "dev.xcode.ios-device-support", .category = "Developer · Xcode",
    .displayName = "iOS Device Support",
    .pathPattern = "~/Library/Developer/Xcode/iOS DeviceSupport",
    .risk = HeuristicRisk::low,
    .whySafe = "Symbol files Xcode caches when you connect an iOS device. Re-downloaded "
               "automatically on next attach. Often the largest reclaimable Xcode folder after "
               "DerivedData on long-time devs.",
    .scannerID = "cache-cleaner", .enumerateChildren = true};

inline constexpr PathHeuristic devXcodeIosDeviceSupportSuperseded{
    .id = "dev.xcode.ios-device-support.superseded", .category = "Developer · Xcode",
    .displayName = "Device Support · older iOS build",
    .pathPattern = "~/Library/Developer/Xcode/iOS DeviceSupport/<build>",
    .risk = HeuristicRisk::low,
    .whySafe = "Symbols for an iOS build older than the newest one here. Xcode re-downloads them "
               "if you ever attach a device on that build again.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devXcodeIosDeviceSupportCurrent{
    .id = "dev.xcode.ios-device-support.current", .category = "Developer · Xcode",
    .displayName = "Device Support · newest iOS build",
    .pathPattern = "~/Library/Developer/Xcode/iOS DeviceSupport/<build>",
    .risk = HeuristicRisk::medium,
    .whySafe = "Symbols for the newest iOS build here - most likely the device you actually use. "
               "Safe to delete, but Xcode has to fetch them again on next attach, so Korvane "
               "leaves it unticked.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devXcodeWatchosDeviceSupport{
    .id = "dev.xcode.watchos-device-support", .category = "Developer · Xcode",
    .displayName = "watchOS Device Support",
    .pathPattern = "~/Library/Developer/Xcode/watchOS DeviceSupport",
    .risk = HeuristicRisk::low,
    .whySafe = "Symbol files for Apple Watch debug sessions. Re-downloaded automatically.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devXcodeTvosDeviceSupport{
    .id = "dev.xcode.tvos-device-support", .category = "Developer · Xcode",
    .displayName = "tvOS Device Support",
    .pathPattern = "~/Library/Developer/Xcode/tvOS DeviceSupport",
    .risk = HeuristicRisk::low,
    .whySafe = "Symbol files for Apple TV debug sessions. Re-downloaded automatically.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devGoBuildCache{
    .id = "dev.go.build-cache", .category = "Developer · Go", .displayName = "Go build cache",
    .pathPattern = "~/Library/Caches/go-build",
    .risk = HeuristicRisk::low,
    .whySafe = "Go's compiled build cache. Rebuilt automatically on the next `go build`.",
    .scannerID = "developer"};

inline constexpr PathHeuristic devGoModuleCache{
    .id = "dev.go.module-cache", .category = "Developer · Go", .displayName = "Go module cache",
    .pathPattern = "~/go/pkg/mod",
    .risk = HeuristicRisk::medium,
    .whySafe = "Downloaded Go module dependencies. Re-downloaded on the next build, so removal "
               "costs network time but no source. Marked medium because a rebuild requires "
               "connectivity.",
    .scannerID = "developer"};

inline constexpr PathHeuristic devXcodeCoresimulatorCaches{
    .id = "dev.xcode.coresimulator-caches", .category = "Developer · Xcode",
    .displayName = "CoreSimulator caches",
    .pathPattern = "~/Library/Developer/CoreSimulator/Caches",
    .risk = HeuristicRisk::low,
    .whySafe = "Cached simulator runtime images and dyld caches. Regenerated by Xcode as needed.",
    .scannerID = "developer"};

inline constexpr PathHeuristic devCarthageCache{
    .id = "dev.carthage.cache", .category = "Developer · Carthage", .displayName = "Carthage cache",
    .pathPattern = "~/Library/Caches/org.carthage.CarthageKit",
    .risk = HeuristicRisk::low,
    .whySafe = "Carthage's downloaded dependency cache. Restored on the next `carthage bootstrap`.",
    .scannerID = "developer"};

inline constexpr PathHeuristic devHomebrewCache{
    .id = "dev.homebrew.cache", .category = "Developer · Homebrew",
    .displayName = "Homebrew downloads cache",
    .pathPattern = "~/Library/Caches/Homebrew",
    .risk = HeuristicRisk::low,
    .whySafe = "Cached package downloads. `brew cleanup` does the same thing.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devDockerOverlay{
    .id = "dev.docker.overlay", .category = "Developer · Docker",
    .displayName = "Docker.raw / overlay storage",
    .pathPattern = "~/Library/Containers/com.docker.docker/Data/vms",
    .risk = HeuristicRisk::high,
    .whySafe = "Docker's VM-backed storage. Removing destroys all local images and containers. "
               "Korvane will surface this for review but never auto-select.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devCocoapodsCache{
    .id = "dev.cocoapods.cache", .category = "Developer · iOS", .displayName = "CocoaPods cache",
    .pathPattern = "~/Library/Caches/CocoaPods",
    .risk = HeuristicRisk::low,
    .whySafe = "Cached pod downloads. Restored by `pod install`.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devGradleCache{
    .id = "dev.gradle.cache", .category = "Developer · JVM", .displayName = "Gradle cache",
    .pathPattern = "~/.gradle/caches",
    .risk = HeuristicRisk::low,
    .whySafe = "Cached Gradle dependencies. Restored on next build.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devMavenRepo{
    .id = "dev.maven.repo", .category = "Developer · JVM", .displayName = "Maven local repository",
    .pathPattern = "~/.m2/repository",
    .risk = HeuristicRisk::medium,
    .whySafe = "Local Maven artefacts. Restored on next Maven build, but can be slow over poor "
               "network.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devCargoCache{
    .id = "dev.cargo.cache", .category = "Developer · Rust", .displayName = "Cargo registry cache",
    .pathPattern = "~/.cargo/registry/cache",
    .risk = HeuristicRisk::low,
    .whySafe = "Cached crate downloads. Cargo restores on next build.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devVscodeCache{
    .id = "dev.vscode.cache", .category = "Developer · IDE", .displayName = "VS Code cache",
    .pathPattern = "~/Library/Application Support/Code/Cache",
    .risk = HeuristicRisk::low,
    .whySafe = "Visual Studio Code's HTTP/extension cache. Rebuilt as you use the editor.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devVscodeCachedData{
    .id = "dev.vscode.cached-data", .category = "Developer · IDE",
    .displayName = "VS Code cached extension data",
    .pathPattern = "~/Library/Application Support/Code/CachedData",
    .risk = HeuristicRisk::low,
    .whySafe = "Pre-compiled extension files. Recreated lazily on next launch.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devCursorCache{
    .id = "dev.cursor.cache", .category = "Developer · IDE", .displayName = "Cursor cache",
    .pathPattern = "~/Library/Application Support/Cursor/Cache",
    .risk = HeuristicRisk::low,
    .whySafe = "Cursor IDE's HTTP/extension cache. Rebuilt as you use the editor.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devJetbrainsCache{
    .id = "dev.jetbrains.cache", .category = "Developer · IDE", .displayName = "JetBrains caches",
    .pathPattern = "~/Library/Caches/JetBrains",
    .risk = HeuristicRisk::low,
    .whySafe = "Indexes and caches for IntelliJ-family IDEs. Rebuilt on next project open - first "
               "launch will be slow.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devNodeModules{
    .id = "dev.node-modules", .category = "Developer · Node", .displayName = "node_modules folders",
    .pathPattern = "**/node_modules",
    .risk = HeuristicRisk::medium,
    .whySafe = "Restored by `npm install` / `yarn` / `pnpm install`. Removing them only costs "
               "time, not data - but offline work will need network access to restore.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic devPythonVenv{
    .id = "dev.python.venv", .category = "Developer · Python",
    .displayName = ".venv / virtualenv folders",
    .pathPattern = "**/.venv",
    .risk = HeuristicRisk::medium,
    .whySafe = "Project-local Python environments. Restored by `pip install -r requirements.txt` "
               "or equivalent.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic mailDownloads{
    .id = "mail.downloads", .category = "Mail", .displayName = "Mail Downloads",
    .pathPattern = "~/Library/Containers/com.apple.mail/Data/Library/Mail Downloads",
    .risk = HeuristicRisk::medium,
    .whySafe = "Local copies of email attachments - every PDF, image, and logo Mail.app has "
               "rendered. Original messages on the server are untouched. If you saved an "
               "attachment elsewhere, that copy is unaffected.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic iosFirmwareUpdates{
    .id = "ios.firmware-updates", .category = "iOS", .displayName = "iOS firmware files",
    .pathPattern = "~/Library/iTunes/iPhone Software Updates",
    .risk = HeuristicRisk::low,
    .whySafe = "Old .ipsw firmware files left over from iOS updates. macOS re-downloads if a "
               "future update is needed. Each one is 5-8 GB.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic mediaSpotifyCache{
    .id = "media.spotify.cache", .category = "Media · Spotify", .displayName = "Spotify cache",
    .pathPattern = "~/Library/Caches/com.spotify.client",
    .risk = HeuristicRisk::low,
    .whySafe = "Spotify's HTTP cache. Regenerated as you stream.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic mediaSpotifyPersistent{
    .id = "media.spotify.persistent", .category = "Media · Spotify",
    .displayName = "Spotify persistent cache",
    .pathPattern = "~/Library/Application Support/Spotify/PersistentCache",
    .risk = HeuristicRisk::low,
    .whySafe = "Spotify's persistent storage cache - usually the larger of the two. Cached audio "
               "tracks and album metadata. Re-downloaded as you play. Often several GB on heavy "
               "listeners.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic mediaAppleMusicCache{
    .id = "media.apple-music.cache", .category = "Media · Apple Music",
    .displayName = "Apple Music streaming cache",
    .pathPattern = "~/Library/Caches/com.apple.AMPLibraryAgent",
    .risk = HeuristicRisk::low,
    .whySafe = "Album-art and streaming buffer cache. Doesn't affect downloaded library. "
               "Regenerated as you listen.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic mediaAppleTvCache{
    .id = "media.apple-tv.cache", .category = "Media · Apple TV", .displayName = "Apple TV cache",
    .pathPattern = "~/Library/Caches/com.apple.TV",
    .risk = HeuristicRisk::low,
    .whySafe = "Cached metadata and thumbnails for the TV app. Regenerated on next browse.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic mediaPodcastsCache{
    .id = "media.podcasts.cache", .category = "Media · Podcasts", .displayName = "Podcasts cache",
    .pathPattern = "~/Library/Group Containers/group.com.apple.podcasts/Library/Cache",
    .risk = HeuristicRisk::low,
    .whySafe = "The Podcasts app's metadata and image cache. Doesn't affect downloaded episodes "
               "(those are in `Episodes/`). Regenerated on next launch.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic chatSlackCache{
    .id = "chat.slack.cache", .category = "Chat · Slack", .displayName = "Slack cache",
    .pathPattern = "~/Library/Application Support/Slack/Cache",
    .risk = HeuristicRisk::low,
    .whySafe = "Chromium's HTTP cache for Slack. Re-fetched as you use Slack. Login state and "
               "message history live elsewhere and are unaffected.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic chatSlackServiceWorker{
    .id = "chat.slack.service-worker", .category = "Chat · Slack",
    .displayName = "Slack Service Worker cache",
    .pathPattern = "~/Library/Application Support/Slack/Service Worker/CacheStorage",
    .risk = HeuristicRisk::low,
    .whySafe = "Slack's offline-mode cache. Regenerated as you reconnect.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic chatDiscordCache{
    .id = "chat.discord.cache", .category = "Chat · Discord", .displayName = "Discord cache",
    .pathPattern = "~/Library/Application Support/discord/Cache",
    .risk = HeuristicRisk::low,
    .whySafe = "Discord's HTTP cache. Re-fetched on reconnect.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic chatTeamsCache{
    .id = "chat.teams.cache", .category = "Chat · Microsoft Teams",
    .displayName = "Microsoft Teams cache",
    .pathPattern = "~/Library/Application Support/Microsoft/Teams/Cache",
    .risk = HeuristicRisk::low,
    .whySafe = "Teams' Chromium cache. Re-fetched on reconnect. Doesn't affect login or message "
               "history.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic systemDiagnosticReports{
    .id = "system.diagnostic-reports", .category = "Diagnostics",
    .displayName = "Diagnostic reports",
    .pathPattern = "~/Library/Logs/DiagnosticReports",
    .risk = HeuristicRisk::low,
    .whySafe = "Crash and hang reports for apps. Useful only when actively debugging a recent "
               "crash. Apple already has copies via the system reporter.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic systemSavedAppState{
    .id = "system.saved-app-state", .category = "Diagnostics",
    .displayName = "Saved Application State",
    .pathPattern = "~/Library/Saved Application State",
    .risk = HeuristicRisk::medium,
    .whySafe = "Window-restore state for apps that quit unexpectedly. Removing means apps reopen "
               "with default windows instead of restoring last session - annoying but not "
               "damaging.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic systemQuicklookCache{
    .id = "system.quicklook-cache", .category = "Diagnostics",
    .displayName = "QuickLook thumbnail cache",
    .pathPattern = "~/Library/Caches/com.apple.QuickLook.thumbnailcache",
    .risk = HeuristicRisk::low,
    .whySafe = "Thumbnails the Finder generates for QuickLook previews. Regenerated on demand - "
               "only cost is the first preview being slightly slower.",
    .scannerID = "cache-cleaner"};

inline constexpr PathHeuristic iosDeviceBackups{
    .id = "ios.device-backups", .category = "iOS Device Backups",
    .displayName = "iOS / iPadOS device backups",
    .pathPattern = "~/Library/Application Support/MobileSync/Backup",
    .risk = HeuristicRisk::high,
    .whySafe = "Full device backups created by Finder/iTunes. Frequently 50-200 GB. Korvane shows "
               "each backup with date and device - only reviewed individually, never "
               "auto-selected.",
    .scannerID = "ios-backup"};

inline constexpr PathHeuristic uninstallAppSupport{
    .id = "uninstall.app-support", .category = "Uninstaller",
    .displayName = "Application Support folders",
    .pathPattern = "~/Library/Application Support",
    .risk = HeuristicRisk::high,
    .whySafe = "Per-app data. Uninstaller surfaces only entries matching the bundle ID of the app "
               "you've chosen to remove.",
    .scannerID = "uninstaller"};

inline constexpr PathHeuristic uninstallPreferences{
    .id = "uninstall.preferences", .category = "Uninstaller", .displayName = "Preferences (.plist)",
    .pathPattern = "~/Library/Preferences",
    .risk = HeuristicRisk::high,
    .whySafe = "Per-app preferences. Uninstaller matches by bundle ID.",
    .scannerID = "uninstaller"};

inline constexpr PathHeuristic uninstallLaunchAgents{
    .id = "uninstall.launch-agents", .category = "Uninstaller", .displayName = "LaunchAgents",
    .pathPattern = "~/Library/LaunchAgents",
    .risk = HeuristicRisk::high,
    .whySafe = "Per-user background helpers. Removed only if matching the bundle ID of the app "
               "being uninstalled.",
    .scannerID = "uninstaller"};

inline constexpr PathHeuristic uninstallCrashLogs{
    .id = "uninstall.crash-logs", .category = "Uninstaller", .displayName = "Crash logs",
    .pathPattern = "~/Library/Application Support/CrashReporter, ~/Library/Crashes",
    .risk = HeuristicRisk::low,
    .whySafe = "Crash reports and hang logs written by the app. Diagnostic data only - no "
               "preferences, documents, or personal data. Safe to remove once the app is gone.",
    .scannerID = "uninstaller"};

inline constexpr PathHeuristic uninstallAppScripts{
    .id = "uninstall.app-scripts", .category = "Uninstaller", .displayName = "Application Scripts",
    .pathPattern = "~/Library/Application Scripts",
    .risk = HeuristicRisk::medium,
    .whySafe = "Per-app sandbox automation scripts stored under the app's bundle ID. Removing "
               "them means any user-written scripts that targeted this app are lost - review "
               "before deleting if you've set up custom automation.",
    .scannerID = "uninstaller"};

inline constexpr PathHeuristic uninstallCookies{
    .id = "uninstall.cookies", .category = "Uninstaller", .displayName = "Cookies",
    .pathPattern = "~/Library/Cookies",
    .risk = HeuristicRisk::low,
    .whySafe = "Persistent HTTP session cookies stored by the app. Removing them logs the app out "
               "of any websites it was signed into - but the app is being uninstalled anyway.",
    .scannerID = "uninstaller"};

inline constexpr PathHeuristic systemTimeMachineSnapshots{
    .id = "system.time-machine-snapshots", .category = "Time Machine",
    .displayName = "Local Time Machine snapshots",
    .pathPattern = "[managed by tmutil]",
    .risk = HeuristicRisk::low,
    .whySafe = "macOS keeps local snapshots of your data on disk so Time Machine can restore even "
               "when the backup drive is unplugged. They are throwaway - your real backups on "
               "your Time Machine destination are unaffected. Often reclaims 50-200 GB.",
    .scannerID = "time-machine"};

inline constexpr PathHeuristic systemTrashAllVolumes{
    .id = "system.trash-all-volumes", .category = "Bin", .displayName = "Bin on all volumes",
    .pathPattern = "~/.Trash + /Volumes/*/.Trashes/<uid>",
    .risk = HeuristicRisk::low,
    .whySafe = "Items you've already moved to the Bin on the boot disk and any mounted volumes. "
               "Most people forget that external drives have separate Bin folders.",
    .scannerID = "trash"};

inline constexpr PathHeuristic oldFilesDownloads{
    .id = "old-files.downloads", .category = "Old · Downloads",
    .displayName = "Old Downloads (90+ days)",
    .pathPattern = "~/Downloads (files older than 90 days)",
    .risk = HeuristicRisk::medium,
    .whySafe = "Files in your Downloads folder you haven't touched in over three months. Disk "
               "images from past app installs (.dmg) are especially common. Reviewable "
               "individually before deletion.",
    .scannerID = "old-files"};

inline constexpr PathHeuristic oldFilesScreenshots{
    .id = "old-files.screenshots", .category = "Old · Screenshots",
    .displayName = "Old screenshots and recordings (30+ days)",
    .pathPattern = "~/Desktop/{Screen Shot, Screenshot, Screen Recording} … (older than 30 days)",
    .risk = HeuristicRisk::low,
    .whySafe = "macOS-style screenshots and screen recordings older than a month, in whichever "
               "folder you have macOS save them to. Matches only the standard `Screen Shot…`, "
               "`Screenshot…` and `Screen Recording…` filenames - other files in those folders "
               "are not touched.",
    .scannerID = "old-files"};

inline constexpr PathHeuristic oldFilesXcodeArchives{
    .id = "old-files.xcode-archives", .category = "Old · Xcode Archives",
    .displayName = "Old Xcode archives (90+ days)",
    .pathPattern = "~/Library/Developer/Xcode/Archives (folders older than 90 days)",
    .risk = HeuristicRisk::high,
    .whySafe = "Xcode .xcarchive bundles from past app builds. Needed to symbolicate crash "
               "reports for shipped releases - only delete archives whose corresponding builds "
               "are no longer in production. Defaulted to high-risk for this reason; review "
               "individually.",
    .scannerID = "old-files"};

inline constexpr PathHeuristic largeFilesUserSelected{
    .id = "large-files.user-selected", .category = "Large File Browser",
    .displayName = "User-selected folder",
    .pathPattern = "[user-chosen]",
    .risk = HeuristicRisk::medium,
    .whySafe = "The Large File Browser only scans folders the user explicitly opens. It surfaces "
               "big files but never selects anything for cleanup automatically.",
    .scannerID = "large-files"};

inline constexpr PathHeuristic developerSimulatorDevices{
    .id = "developer.simulator-devices", .category = "Developer · Simulators",
    .displayName = "Simulator device data",
    .pathPattern = "~/Library/Developer/CoreSimulator/Devices",
    .risk = HeuristicRisk::medium,
    .whySafe = "Virtual device data for iOS, watchOS, tvOS, and visionOS simulators. Re-created "
               "by Xcode the next time you run on a simulator. Often the largest developer folder "
               "after DerivedData - can reach 50-100 GB on machines that have run many Xcode "
               "versions.",
    .scannerID = "developer"};

inline constexpr PathHeuristic developerSimulatorRuntimes{
    .id = "developer.simulator-runtimes", .category = "Developer · Simulators",
    .displayName = "Downloaded simulator runtimes",
    .pathPattern = "~/Library/Developer/CoreSimulator/Images",
    .risk = HeuristicRisk::medium,
    .whySafe = "Downloaded OS images for iOS, watchOS, tvOS simulators - each 5-15 GB. "
               "Re-downloaded from Xcode's Platforms pane if you need them again.",
    .scannerID = "developer"};

inline constexpr PathHeuristic developerNpmCache{
    .id = "developer.npm-cache", .category = "Developer · Node", .displayName = "npm cache",
    .pathPattern = "~/.npm/_cacache",
    .risk = HeuristicRisk::low,
    .whySafe = "npm's content-addressed download cache. Restored automatically on the next `npm "
               "install`. Removing it only slows the next install slightly.",
    .scannerID = "developer"};

inline constexpr PathHeuristic developerYarnCache{
    .id = "developer.yarn-cache", .category = "Developer · Node",
    .displayName = "Yarn Classic cache",
    .pathPattern = "~/.yarn/cache",
    .risk = HeuristicRisk::low,
    .whySafe = "Yarn 1.x's local package cache. Restored automatically on the next `yarn install`.",
    .scannerID = "developer"};

inline constexpr PathHeuristic developerYarnBerryCache{
    .id = "developer.yarn-berry-cache", .category = "Developer · Node",
    .displayName = "Yarn Berry (v3+) cache",
    .pathPattern = "~/.yarn/berry/cache",
    .risk = HeuristicRisk::low,
    .whySafe = "Yarn Berry's content-addressed cache. Restored on the next install.",
    .scannerID = "developer"};

inline constexpr PathHeuristic developerPnpmStore{
    .id = "developer.pnpm-store", .category = "Developer · Node",
    .displayName = "pnpm content store",
    .pathPattern = "~/.pnpm-store",
    .risk = HeuristicRisk::medium,
    .whySafe = "pnpm's shared content-addressed store. All local pnpm projects hard-link from "
               "here - removing it forces a full re-download on the next install across every "
               "project.",
    .scannerID = "developer"};

inline constexpr PathHeuristic developerSwiftuiPreviews{
    .id = "developer.swiftui-previews", .category = "Developer · Xcode",
    .displayName = "SwiftUI Preview cache",
    .pathPattern = "~/Library/Developer/Xcode/UserData/Previews",
    .risk = HeuristicRisk::low,
    .whySafe = "Compiled preview snapshots for SwiftUI Canvas. Rebuilt automatically on the next "
               "preview render.",
    .scannerID = "developer"};

inline constexpr PathHeuristic developerPipCache{
    .id = "developer.pip-cache", .category = "Developer · Python",
    .displayName = "pip download cache",
    .pathPattern = "~/Library/Caches/pip",
    .risk = HeuristicRisk::low,
    .whySafe = "Cached Python package downloads. pip re-downloads packages on the next `pip "
               "install`. Removing it never affects installed packages.",
    .scannerID = "developer"};

inline constexpr PathHeuristic developerGemCache{
    .id = "developer.gem-cache", .category = "Developer · Ruby",
    .displayName = "RubyGems user directory",
    .pathPattern = "~/.gem",
    .risk = HeuristicRisk::medium,
    .whySafe = "User-installed Ruby gems and their download cache. Gems reinstall via `gem "
               "install` or `bundle install`. May be slow to restore over a poor network.",
    .scannerID = "developer"};

inline constexpr PathHeuristic developerBundlerCache{
    .id = "developer.bundler-cache", .category = "Developer · Ruby",
    .displayName = "Bundler gem cache",
    .pathPattern = "~/.bundle/cache",
    .risk = HeuristicRisk::low,
    .whySafe = "Cached .gem files bundler downloads before installation. Restored automatically "
               "on the next `bundle install`.",
    .scannerID = "developer"};

inline constexpr PathHeuristic orphanedAppSupport{
    .id = "orphaned.app-support", .category = "Orphaned Files",
    .displayName = "Application Support leftovers",
    .pathPattern = "~/Library/Application Support (top-level folders with no matching installed "
                   "app)",
    .risk = HeuristicRisk::medium,
    .whySafe = "Directories in ~/Library/Application Support whose bundle ID or name no longer "
               "matches any installed app. Cross-referenced against every .app in /Applications "
               "and ~/Applications before flagging.",
    .scannerID = "orphaned-files"};

inline constexpr PathHeuristic orphanedContainers{
    .id = "orphaned.containers", .category = "Orphaned Files",
    .displayName = "App container leftovers",
    .pathPattern = "~/Library/Containers (bundle IDs with no matching installed app)",
    .risk = HeuristicRisk::medium,
    .whySafe = "Sandboxed app containers whose bundle ID no longer matches any installed app. "
               "Each container's bundle ID is verified against /Applications and ~/Applications.",
    .scannerID = "orphaned-files"};

inline constexpr PathHeuristic orphanedGroupContainers{
    .id = "orphaned.group-containers", .category = "Orphaned Files",
    .displayName = "App group container leftovers",
    .pathPattern = "~/Library/Group Containers (group IDs with no matching installed app)",
    .risk = HeuristicRisk::medium,
    .whySafe = "Shared group containers whose group ID no longer matches any installed app family.",
    .scannerID = "orphaned-files"};

inline constexpr PathHeuristic duplicateFinderDuplicate{
    .id = "duplicate-finder.duplicate", .category = "Duplicate Files",
    .displayName = "Duplicate files (content-identical)",
    .pathPattern = "[user-chosen folder]",
    .risk = HeuristicRisk::medium,
    .whySafe = "Files whose SHA-256 hash is identical - true bit-for-bit duplicates. Korvane "
               "pre-selects all but the newest copy in each group. Review before deleting.",
    .scannerID = "duplicate-finder"};

inline constexpr PathHeuristic downloadsAllFiles{
    .id = "downloads.all-files", .category = "Downloads",
    .displayName = "Files in Downloads folder",
    .pathPattern = "~/Downloads (all files, grouped by type)",
    .risk = HeuristicRisk::medium,
    .whySafe = "Regular files inside your ~/Downloads folder and any subfolders. Grouped by file "
               "type so you can see at a glance how much space disk images, videos, archives, and "
               "documents are consuming. Nothing is pre-selected automatically.",
    .scannerID = "downloads"};

inline constexpr PathHeuristic icloudLocalCopies{
    .id = "icloud.local-copies", .category = "iCloud Drive",
    .displayName = "iCloud Drive files with local copies",
    .pathPattern = "~/Library/Mobile Documents/com~apple~CloudDocs",
    .risk = HeuristicRisk::low,
    .whySafe = "Files stored in iCloud Drive that also have a local copy on this Mac. Evicting "
               "the local copy (\"Optimise Storage\") keeps them safely in iCloud and frees local "
               "disk space. The file remains accessible - macOS re-downloads it on demand.",
    .scannerID = "icloud-cleanup"};

inline constexpr PathHeuristic similarImagesNearDuplicate{
    .id = "similar-images.near-duplicate", .category = "Similar Images",
    .displayName = "Near-duplicate images",
    .pathPattern = "[user-chosen folder]",
    .risk = HeuristicRisk::medium,
    .whySafe = "Images with near-identical visual content detected by perceptual hashing. Groups "
               "contain likely duplicates, burst shots, or edited copies. Review each group "
               "before deleting - Korvane keeps the largest file in each group but you decide.",
    .scannerID = "similar-images"};

inline constexpr PathHeuristic browserSafariCache{
    .id = "browser.safari.cache", .category = "Browser · Safari", .displayName = "Safari cache",
    .pathPattern = "~/Library/Caches/com.apple.Safari",
    .risk = HeuristicRisk::low,
    .whySafe = "Safari's web content cache. Regenerated as you browse. Removing it never affects "
               "bookmarks, history, passwords, or open tabs.",
    .scannerID = "browser-cache"};

inline constexpr PathHeuristic browserChromeCache{
    .id = "browser.chrome.cache", .category = "Browser · Chrome",
    .displayName = "Google Chrome cache",
    .pathPattern = "~/Library/Application Support/Google/Chrome/[profiles]/Cache, Code Cache, "
                   "GPUCache, Service Worker",
    .risk = HeuristicRisk::low,
    .whySafe = "Chrome's HTTP, JavaScript compile, and GPU shader caches across all profiles. "
               "Regenerated as you browse. Sign-in state, extensions, bookmarks, and passwords "
               "are stored elsewhere and are not affected.",
    .scannerID = "browser-cache"};

inline constexpr PathHeuristic browserFirefoxCache{
    .id = "browser.firefox.cache", .category = "Browser · Firefox", .displayName = "Firefox cache",
    .pathPattern = "~/Library/Application Support/Firefox/Profiles/[profiles]/cache2, startupCache",
    .risk = HeuristicRisk::low,
    .whySafe = "Firefox's network and startup caches across all profiles. Regenerated as you "
               "browse. Logins, bookmarks, and extensions live in a separate profile store and "
               "are unaffected.",
    .scannerID = "browser-cache"};

inline constexpr PathHeuristic browserBraveCache{
    .id = "browser.brave.cache", .category = "Browser · Brave",
    .displayName = "Brave Browser cache",
    .pathPattern = "~/Library/Application Support/BraveSoftware/Brave-Browser/[profiles]/Cache, "
                   "Code Cache, GPUCache",
    .risk = HeuristicRisk::low,
    .whySafe = "Brave's HTTP and compile caches. Regenerated as you browse. Wallet, passwords, "
               "and bookmarks are stored separately.",
    .scannerID = "browser-cache"};

inline constexpr PathHeuristic browserArcCache{
    .id = "browser.arc.cache", .category = "Browser · Arc", .displayName = "Arc cache",
    .pathPattern = "~/Library/Application Support/Arc/User Data/[profiles]/Cache, Code Cache, "
                   "GPUCache",
    .risk = HeuristicRisk::low,
    .whySafe = "Arc's HTTP and compile caches. Regenerated as you browse. Spaces, pinned tabs, "
               "and passwords are stored separately.",
    .scannerID = "browser-cache"};

inline constexpr PathHeuristic browserEdgeCache{
    .id = "browser.edge.cache", .category = "Browser · Edge", .displayName = "Microsoft Edge cache",
    .pathPattern = "~/Library/Application Support/Microsoft Edge/[profiles]/Cache, Code Cache, "
                   "GPUCache",
    .risk = HeuristicRisk::low,
    .whySafe = "Edge's HTTP and compile caches. Regenerated as you browse. Favourites and "
               "passwords live in a separate store.",
    .scannerID = "browser-cache"};

inline constexpr PathHeuristic browserOperaCache{
    .id = "browser.opera.cache", .category = "Browser · Opera", .displayName = "Opera cache",
    .pathPattern = "~/Library/Application Support/com.operasoftware.Opera/[profiles]/Cache, Code "
                   "Cache, GPUCache",
    .risk = HeuristicRisk::low,
    .whySafe = "Opera's HTTP and compile caches. Regenerated as you browse.",
    .scannerID = "browser-cache"};

inline constexpr PathHeuristic browserVivaldiCache{
    .id = "browser.vivaldi.cache", .category = "Browser · Vivaldi", .displayName = "Vivaldi cache",
    .pathPattern = "~/Library/Application Support/Vivaldi/[profiles]/Cache, Code Cache, GPUCache",
    .risk = HeuristicRisk::low,
    .whySafe = "Vivaldi's HTTP and compile caches. Regenerated as you browse.",
    .scannerID = "browser-cache"};

inline constexpr PathHeuristic aiOllamaModels{
    .id = "ai.ollama.models", .category = "AI Models", .displayName = "Ollama models",
    .pathPattern = "~/.ollama/models",
    .risk = HeuristicRisk::medium,
    .whySafe = "Language model weights pulled with Ollama - frequently 40 GB or more in total. "
               "Any model from the registry comes back with `ollama pull`, though that is a large "
               "download. Models you built yourself with `ollama create` would need rebuilding "
               "from their source files.",
    .scannerID = "developer"};

inline constexpr PathHeuristic aiHuggingfaceHub{
    .id = "ai.huggingface.hub", .category = "AI Models", .displayName = "Hugging Face model cache",
    .pathPattern = "~/.cache/huggingface/hub",
    .risk = HeuristicRisk::medium,
    .whySafe = "The shared download cache used by transformers, diffusers, sentence-transformers "
               "and MLX. Every model re-downloads automatically the next time a script asks for "
               "it. This is usually the biggest AI folder on a machine that runs Python notebooks.",
    .scannerID = "developer"};

inline constexpr PathHeuristic aiLmstudioModels{
    .id = "ai.lmstudio.models", .category = "AI Models", .displayName = "LM Studio models",
    .pathPattern = "~/.lmstudio/models",
    .risk = HeuristicRisk::medium,
    .whySafe = "GGUF model files downloaded through LM Studio. Re-downloadable from inside the "
               "app - each one is typically 4-40 GB.",
    .scannerID = "developer"};

inline constexpr PathHeuristic aiLmstudioLegacyModels{
    .id = "ai.lmstudio.legacy-models", .category = "AI Models",
    .displayName = "LM Studio models (older versions)",
    .pathPattern = "~/.cache/lm-studio/models",
    .risk = HeuristicRisk::medium,
    .whySafe = "Where LM Studio kept its models before version 0.3. If you have since upgraded, "
               "this copy is usually dead weight - the app no longer reads from it.",
    .scannerID = "developer"};

inline constexpr PathHeuristic aiGpt4allModels{
    .id = "ai.gpt4all.models", .category = "AI Models", .displayName = "GPT4All models",
    .pathPattern = "~/Library/Application Support/nomic.ai/GPT4All",
    .risk = HeuristicRisk::medium,
    .whySafe = "Model files downloaded by GPT4All. Re-downloadable from the app's model list.",
    .scannerID = "developer"};

inline constexpr PathHeuristic aiDiffusionbeeModels{
    .id = "ai.diffusionbee.models", .category = "AI Models", .displayName = "DiffusionBee models",
    .pathPattern = "~/.diffusionbee",
    .risk = HeuristicRisk::medium,
    .whySafe = "Stable Diffusion weights and converted CoreML models used by DiffusionBee - "
               "commonly 10-30 GB. The app re-downloads and re-converts them on demand.",
    .scannerID = "developer"};

inline constexpr PathHeuristic mediaAdobeMediaCacheFiles{
    .id = "media.adobe.media-cache-files", .category = "Adobe",
    .displayName = "Adobe media cache files",
    .pathPattern = "~/Library/Application Support/Adobe/Common/Media Cache Files",
    .risk = HeuristicRisk::low,
    .whySafe = "Conformed audio and peak files Premiere Pro and After Effects generate while you "
               "work. They are rebuilt automatically the next time you open the project - the "
               "only cost is a few moments of re-conforming.",
    .scannerID = "developer"};

inline constexpr PathHeuristic mediaAdobeMediaCache{
    .id = "media.adobe.media-cache", .category = "Adobe",
    .displayName = "Adobe media cache database",
    .pathPattern = "~/Library/Application Support/Adobe/Common/Media Cache",
    .risk = HeuristicRisk::low,
    .whySafe = "The index Adobe apps keep alongside the cache files above. Regenerated on next "
               "launch.",
    .scannerID = "developer"};

inline constexpr PathHeuristic systemAppleIntelligence{
    .id = "system.apple-intelligence", .category = "Apple Intelligence",
    .displayName = "Apple Intelligence model cache",
    .pathPattern = "/Library/Application Support/com.apple.AppleIntelligence",
    .risk = HeuristicRisk::medium,
    .whySafe = "On-device AI model weights downloaded for Apple Intelligence features (Writing "
               "Tools, Image Playground, etc.). macOS re-downloads them if you re-enable Apple "
               "Intelligence. Often 500 MB-4 GB per model family.",
    .scannerID = "system-files"};

inline constexpr PathHeuristic systemAppleIntelligenceUser{
    .id = "system.apple-intelligence-user", .category = "Apple Intelligence",
    .displayName = "Apple Intelligence user model data",
    .pathPattern = "~/Library/Application Support/com.apple.AppleIntelligence",
    .risk = HeuristicRisk::medium,
    .whySafe = "User-specific Apple Intelligence model data and personalisation cache. Re-built "
               "by macOS when Apple Intelligence is in use.",
    .scannerID = "system-files"};

inline constexpr PathHeuristic systemGaragebandUserSounds{
    .id = "system.garageband-user-sounds", .category = "GarageBand",
    .displayName = "GarageBand user sound library",
    .pathPattern = "~/Library/Application Support/GarageBand",
    .risk = HeuristicRisk::medium,
    .whySafe = "GarageBand's user-installed sound packs, loops, and instruments. GarageBand can "
               "re-download any sound from the Sound Library browser. Safe to remove if you don't "
               "use GarageBand.",
    .scannerID = "system-files"};

inline constexpr PathHeuristic systemAudioMusicApps{
    .id = "system.audio-music-apps", .category = "GarageBand",
    .displayName = "Audio Music Apps content",
    .pathPattern = "~/Music/Audio Music Apps",
    .risk = HeuristicRisk::medium,
    .whySafe = "Plug-in settings, patches, and sound content installed by GarageBand, Logic Pro, "
               "and third-party audio apps. Re-downloadable from the Sound Library.",
    .scannerID = "system-files"};

inline constexpr PathHeuristic systemMessagesAttachments{
    .id = "system.messages-attachments", .category = "Messages",
    .displayName = "iMessage & SMS attachments",
    .pathPattern = "~/Library/Messages/Attachments",
    .risk = HeuristicRisk::high,
    .whySafe = "Photos and files received in Messages. These are the attachments themselves, not "
               "copies of them - removing one deletes it from that conversation. With Messages in "
               "iCloud it may re-download; otherwise it is gone for that chat. Review carefully.",
    .scannerID = "system-files"};

inline constexpr PathHeuristic systemParallelsVms{
    .id = "system.parallels-vms", .category = "Virtual Machines",
    .displayName = "Parallels Desktop VMs",
    .pathPattern = "~/Parallels",
    .risk = HeuristicRisk::high,
    .whySafe = "Parallels Desktop virtual machine bundles. Each contains a full OS image - "
               "removing one permanently destroys that VM and all data inside it. Korvane "
               "surfaces sizes for review but never auto-selects these.",
    .scannerID = "system-files"};

inline constexpr PathHeuristic systemVmwareVms{
    .id = "system.vmware-vms", .category = "Virtual Machines", .displayName = "VMware Fusion VMs",
    .pathPattern = "~/Virtual Machines.localized",
    .risk = HeuristicRisk::high,
    .whySafe = "VMware Fusion virtual machine bundles. Removing one permanently destroys that VM "
               "and all its data. Korvane surfaces sizes for review but never auto-selects.",
    .scannerID = "system-files"};

inline constexpr PathHeuristic systemOrbstackData{
    .id = "system.orbstack-data", .category = "Virtual Machines", .displayName = "OrbStack VM data",
    .pathPattern = "~/.orbstack/data",
    .risk = HeuristicRisk::high,
    .whySafe = "OrbStack's Linux VM and container disk images. Removing this destroys all "
               "OrbStack VMs and containers. Korvane surfaces the size for review but never "
               "auto-selects.",
    .scannerID = "system-files"};

inline constexpr PathHeuristic systemLimaVms{
    .id = "system.lima-vms", .category = "Virtual Machines", .displayName = "Lima VM instances",
    .pathPattern = "~/.local/share/lima",
    .risk = HeuristicRisk::high,
    .whySafe = "Lima (and Colima) Linux VM disk images. Removing an instance destroys all data "
               "inside that VM. Never auto-selected.",
    .scannerID = "system-files"};

// clang-format on

} // namespace korvane::PathHeuristics
