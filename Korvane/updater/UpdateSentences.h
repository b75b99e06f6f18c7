#pragma once

#include <string>
#include <string_view>

namespace korvane {

/// What an update tells its user. Fixed texts.
namespace UpdateSentences {

constexpr const char* badAnswer = "The update server did not answer properly.";
constexpr const char* timeOut = "The update server took too long to answer. Try again in a moment.";
constexpr const char* unreadableFeed = "The update information could not be read.";
constexpr const char* unexpectedPlace = "The update pointed somewhere unexpected and was ignored.";
constexpr const char* downloadFailed = "The download failed.";
constexpr const char* wrongChecksum =
    "The download did not match its checksum, so it was discarded. Try again, and if it keeps "
    "happening please get in touch.";
constexpr const char* unopenedImage = "The downloaded disk image could not be opened.";
constexpr const char* emptyImage = "The disk image did not contain Korvane.";
constexpr const char* unexaminedApp = "The downloaded app could not be examined.";
constexpr const char* unpreparedCheck = "The signature check could not be prepared.";
constexpr const char* wrongSignature =
    "The downloaded app is not correctly signed by Ostrel Limited, so it was discarded.";
constexpr const char* manualInstall =
    "It can't be installed automatically because this account can't write to the folder Korvane "
    "is in - usually that means an administrator installed it. The disk image is in your Downloads "
    "and revealed in Finder; an administrator can drag it across as normal.";
constexpr const char* noBundle =
    "This copy of Korvane is not an app bundle, so it cannot replace itself. Update it with what "
    "installed it, usually the package manager.";
constexpr const char* cancelled = "The update was cancelled; nothing was changed.";

constexpr const char* checking = "Checking for updates…";
constexpr const char* downloading = "Downloading…";
constexpr const char* verifying = "Checking the download is intact and signed by Ostrel Limited…";
constexpr const char* installing = "Installing…";
constexpr const char* relaunching = "Restarting Korvane…";

[[nodiscard]] std::string unreachable(std::string_view host);
[[nodiscard]] std::string systemTooOld(std::string_view version, std::string_view minimum);
[[nodiscard]] std::string wrongVersion(std::string_view version);
[[nodiscard]] std::string notInstalled(std::string_view reason);
/// The two parts of what is said when there is nothing newer.
[[nodiscard]] std::string upToDateTitle(std::string_view version);
[[nodiscard]] std::string upToDateDetail(std::string_view version);

} // namespace UpdateSentences

} // namespace korvane
