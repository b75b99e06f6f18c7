#include "Korvane/updater/AppUpdater.h"

#include "Korvane/updater/FileDigest.h"
#include "Korvane/updater/ScratchFolder.h"
#include "Korvane/updater/UpdateError.h"
#include "Korvane/updater/UpdateFeed.h"
#include "Korvane/updater/UpdateImage.h"
#include "Korvane/updater/UpdateSentences.h"
#include "Korvane/updater/VersionNumber.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/foundation/UUID.h"
#include "KorvaneCore/platform/FolderFacts.h"

#include <algorithm>
#include <cerrno>
#include <compare>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane {

namespace {

using Kind = UpdatePhase::Kind;
using Outcome = HTTPSDownload::Outcome;

UpdatePhase simplePhase(Kind kind, std::string message = {}) {
    UpdatePhase phase;
    phase.kind = kind;
    phase.message = std::move(message);
    return phase;
}

UpdatePhase releasePhase(Kind kind, const UpdateRelease& release) {
    UpdatePhase phase;
    phase.kind = kind;
    phase.release = release;
    return phase;
}

[[noreturn]] void failAs(Outcome outcome, const std::string& host) {
    switch (outcome) {
    case Outcome::timeOut:
        throw UpdateError(UpdateSentences::timeOut);
    case Outcome::badStatus:
        throw UpdateError(UpdateSentences::badAnswer);
    case Outcome::elsewhere:
        throw UpdateError(UpdateSentences::unexpectedPlace);
    case Outcome::tooLarge:
        throw UpdateError(UpdateSentences::unreadableFeed);
    case Outcome::cancelled:
        throw UpdateError(UpdateSentences::cancelled);
    default:
        throw UpdateError(UpdateSentences::unreachable(host));
    }
}

void verifyChecksum(const FileURL& image, std::string expected) {
    std::transform(expected.begin(), expected.end(), expected.begin(),
                   [](char c) { return c >= 'A' && c <= 'F' ? static_cast<char>(c + 32) : c; });
    if (hexText(fileDigest(image)) != expected) {
        throw UpdateError(UpdateSentences::wrongChecksum);
    }
}

/// The app in an opened image, of the announced version and signed.
FileURL verifiedApp(const FileURL& volume, const UpdateRelease& release,
                    const SigningRequirement& requirement) {
    FileURL app = volume.appending("Korvane.app");
    FileFacts facts;
    if (readFacts(AT_FDCWD, app.path().c_str(), facts) != 0 ||
        facts.kind != DirectoryReader::Kind::folder) {
        throw UpdateError(UpdateSentences::emptyImage);
    }
    const auto bundle = AppBundle::at(app);
    if (!bundle || bundle->version != release.version) {
        throw UpdateError(UpdateSentences::wrongVersion(release.version));
    }
    verifyBundleSignature(app, requirement);
    // Signed or not, an app that cannot be started is none.
    if (bundleProgram(app).path().empty()) {
        throw UpdateError(UpdateSentences::emptyImage);
    }
    return app;
}

bool isWritableFolder(const FileURL& folder) {
    return access(folder.path().c_str(), W_OK | X_OK) == 0;
}

} // namespace

AppUpdater::AppUpdater(UpdaterConfiguration configuration, System system,
                       std::function<void(const Phase&)> onChange)
    : configuration_(std::move(configuration)), system_(std::move(system)),
      onChange_(std::move(onChange)) {}

UpdatePhase AppUpdater::phase() const {
    const std::lock_guard guard(lock_);
    return phase_;
}

bool AppUpdater::isShown() const {
    const Kind kind = phase().kind;
    const bool isQuiet = kind == Kind::checking || kind == Kind::upToDate || kind == Kind::failed;
    return kind != Kind::idle && (!isQuiet || wasUserInitiated_);
}

void AppUpdater::dismiss() {
    {
        const std::lock_guard guard(lock_);
        if (isWorking_) {
            return;
        }
    }
    enter({});
}

void AppUpdater::enter(const Phase& phase) {
    {
        const std::lock_guard guard(lock_);
        phase_ = phase;
    }
    if (onChange_) {
        onChange_(phase);
    }
}

void AppUpdater::work(const std::function<void()>& steps) {
    std::string sentence;
    try {
        steps();
    } catch (const UpdateError& error) {
        sentence = error.what();
    } catch (const std::exception& error) {
        sentence = UpdateSentences::notInstalled(localizedDescription(error));
    }
    {
        const std::lock_guard guard(lock_);
        isWorking_ = false;
    }
    if (!sentence.empty()) {
        enter(simplePhase(Kind::failed, std::move(sentence)));
    }
}

WebAddress AppUpdater::feedAddress() const {
    auto address = WebAddress::fromText(configuration_.feedURL);
    if (!address || !address->isWithin(*address)) {
        throw UpdateError(UpdateSentences::unexpectedPlace);
    }
    return *std::move(address);
}

HTTPSDownload AppUpdater::connection() const {
    return {feedAddress(), "Korvane/" + configuration_.runningVersion, configuration_.certificates};
}

void AppUpdater::check(bool userInitiated) {
    {
        const std::lock_guard guard(lock_);
        if (std::exchange(isWorking_, true)) {
            return;
        }
        wasUserInitiated_ = userInitiated;
    }
    work([this] {
        enter(simplePhase(Kind::checking));
        const WebAddress feed = feedAddress();
        std::string body;
        const Outcome outcome =
            connection().fetch(feed, configuration_.feedLimits, [&](std::string_view bytes) {
                body += bytes;
                return true;
            });
        if (outcome != Outcome::complete) {
            failAs(outcome, feed.host);
        }
        enter(evaluate(parseUpdateFeed(body, feed)));
    });
}

UpdatePhase AppUpdater::evaluate(const Release& release) const {
    if (release.minimumSystemVersion &&
        std::is_gt(compareVersions(*release.minimumSystemVersion, configuration_.systemVersion))) {
        throw UpdateError(
            UpdateSentences::systemTooOld(release.version, *release.minimumSystemVersion));
    }
    const bool isNewer =
        std::is_gt(compareVersions(release.version, configuration_.runningVersion));
    return isNewer ? releasePhase(Kind::available, release) : simplePhase(Kind::upToDate);
}

void AppUpdater::install(const Release& release) {
    {
        const std::lock_guard guard(lock_);
        if (std::exchange(isWorking_, true)) {
            return;
        }
        wasUserInitiated_ = true;
    }
    work([this, release] { performInstall(release); });
}

void AppUpdater::download(const Release& release, const FileURL& image,
                          const std::function<void(double)>& onProgress) const {
    const FileDescriptor file(
        open(image.path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    if (!file) {
        throw UpdateError(UpdateSentences::downloadFailed);
    }
    constexpr double smallestStep = 0.005;
    double shown = 0;
    const Outcome outcome = connection().fetch(
        imageAddress(release, feedAddress()), configuration_.imageLimits,
        [&](std::string_view bytes) {
            try {
                writeAll(file.get(), bytes, image.path());
                return true;
            } catch (const FileError&) {
                return false;
            }
        },
        [&](std::int64_t now, std::int64_t total) {
            const double fraction =
                total > 0 ? static_cast<double>(now) / static_cast<double>(total) : 0;
            if (fraction - shown >= smallestStep || (fraction == 1 && shown != 1)) {
                shown = fraction;
                onProgress(fraction);
            }
        });
    if (outcome != Outcome::complete) {
        throw UpdateError(outcome == Outcome::cancelled ? UpdateSentences::cancelled
                                                        : UpdateSentences::downloadFailed);
    }
}

void AppUpdater::performInstall(const Release& release) {
    if (!configuration_.bundle) {
        throw UpdateError(UpdateSentences::noBundle);
    }
    const auto showProgress = [this](double fraction) {
        Phase phase = simplePhase(Kind::downloading);
        phase.fraction = fraction;
        enter(phase);
    };
    showProgress(0);
    const std::string name = "Korvane-" + release.version +
                             std::string(imageExtension(imageAddress(release, feedAddress()).path));
    const ScratchFolder downloaded(configuration_.temporary, "korvane-download-", system_.files);
    const FileURL image = downloaded.url().appending(name);
    download(release, image, showProgress);

    enter(simplePhase(Kind::verifying));
    verifyChecksum(image, release.sha256);
    const ScratchFolder mountFolder(configuration_.temporary, "korvane-update-", system_.files);
    auto opened = UpdateImage::open(image, mountFolder.url(), system_.launcher);
    const FileURL app = verifiedApp(mountFolder.url(), release, configuration_.requirement);

    const FileURL& running = configuration_.bundle->location;
    if (!isWritableFolder(running.deletingLastPathComponent())) {
        opened.reset();
        saveForAdministrator(release, image);
        return;
    }
    {
        BundleSwap swap(running, app, system_.files, system_.exchange);
        opened.reset();
        if (Task::isCancelled()) {
            throw UpdateError(UpdateSentences::cancelled);
        }
        enter(simplePhase(Kind::installing));
        swap.perform();
    }
    (void)relaunchAfterExit(running, system_.start);
    enter(releasePhase(Kind::relaunching, release));
}

void AppUpdater::saveForAdministrator(const Release& release, const FileURL& image) {
    const FileURL folder = configuration_.downloads.resolvingSymlinks();
    const FileURL place = folder.appending(image.lastPathComponent());
    const FileURL incoming = folder.appending(".Korvane-download-" + UUID::random().text());
    createDirectories(folder);
    system_.files.moveItem(image, incoming);
    // Takes the place of an older image in one step; a folder of that name is not ours.
    if (std::rename(incoming.path().c_str(), place.path().c_str()) != 0) {
        const int error = errno;
        system_.files.removeItem(incoming);
        throw FileError(error, "replace", place.path());
    }
    system_.reveal(place);
    Phase phase = releasePhase(Kind::needsManualInstall, release);
    phase.location = configuration_.downloads.appending(place.lastPathComponent());
    phase.message = UpdateSentences::manualInstall;
    enter(phase);
}

} // namespace korvane
