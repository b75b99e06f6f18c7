#include "Korvane/window/home/DashboardModel.h"

#include "Korvane/audit/AuditText.h"
#include "Korvane/audit/ModuleNames.h"
#include "Korvane/window/support/Texts.h"
#include "KorvaneCore/foundation/FileError.h"

#include <algorithm>
#include <memory>

namespace korvane {

namespace {

/// A disk this full is shown as a warning.
constexpr double nearlyFullShare = 0.9;
/// As many scans as fit beside the disks.
constexpr std::size_t shownScans = 6;

QString diskTitle(const Volume& volume) {
    if (volume.isSystem) {
        return DashboardModel::tr("System disk");
    }
    return volume.holdsHome ? DashboardModel::tr("Home disk")
                            : Texts::data(volume.top.lastPathComponent());
}

QVariantMap diskValues(const Volume& volume) {
    return {
        {QStringLiteral("name"), diskTitle(volume)},
        {QStringLiteral("place"), Texts::data(volume.top.path())},
        {QStringLiteral("freeText"),
         DashboardModel::tr("%1 free").arg(Texts::bytes(volume.available))},
        {QStringLiteral("totalText"), DashboardModel::tr("of %1").arg(Texts::bytes(volume.total))},
        {QStringLiteral("usedShare"), volume.usedShare()},
        {QStringLiteral("isNearlyFull"), volume.usedShare() >= nearlyFullShare}};
}

QVariantMap scanValues(const ScanSummary& scan) {
    QString found = DashboardModel::tr("Nothing found");
    if (scan.itemCount > 0) {
        found = DashboardModel::tr("%1 in %2")
                    .arg(Texts::bytes(scan.totalBytes), Texts::items(scan.itemCount));
    }
    return {{QStringLiteral("toolID"), Texts::sentence(scan.scannerID)},
            {QStringLiteral("name"), Texts::data(moduleName(scan.scannerID))},
            {QStringLiteral("when"), Texts::dayAndTime(scan.finishedAt)},
            {QStringLiteral("found"), found}};
}

DashboardModel::Chain chainOf(AuditChainResult::Coverage coverage) {
    switch (coverage) {
    case AuditChainResult::Coverage::verified:
        return DashboardModel::Sound;
    case AuditChainResult::Coverage::broken:
        return DashboardModel::Broken;
    case AuditChainResult::Coverage::unverifiable:
    case AuditChainResult::Coverage::empty:
        break;
    }
    return DashboardModel::Unattested;
}

} // namespace

/// What one reading brings back.
struct DashboardModel::Found {
    std::vector<Volume> volumes;
    AuditStatistics statistics;
    AuditChainResult integrity;
    std::vector<ScanSummary> scans;
};

DashboardModel::DashboardModel(Services& services, QObject* parent)
    : QObject(parent), services_(services) {
    refresh();
}

void DashboardModel::refresh() {
    isOutdated_ = work_.isRunning();
    if (isOutdated_) {
        return;
    }
    work_.start([this, &services = services_](const Work::Post& post) -> Work::Step {
        const auto found = std::make_shared<Found>();
        // The disks are there at once, however long the log is.
        found->volumes = mountedVolumes(services.home());
        post([this, volumes = found->volumes] {
            disks_.clear();
            std::transform(volumes.begin(), volumes.end(), std::back_inserter(disks_), diskValues);
            emit changed();
        });
        found->scans = services.scanCache().summaries();
        try {
            found->integrity = services.auditLog().verifyChain();
            found->statistics = auditStatistics(services.auditLog().entries(), found->integrity);
        } catch (const std::exception& error) {
            found->statistics.status = localizedDescription(error);
        }
        return [this, found] { publish(*found); };
    });
}

void DashboardModel::publish(const Found& found) {
    statistics_ = found.statistics;
    chain_ = chainOf(found.integrity.coverage);
    scans_.clear();
    const auto shown = std::min(shownScans, found.scans.size());
    std::transform(found.scans.begin(), found.scans.begin() + static_cast<std::ptrdiff_t>(shown),
                   std::back_inserter(scans_), scanValues);
    isLoaded_ = true;
    emit changed();
    if (isOutdated_) {
        refresh();
    }
}

QVariant DashboardModel::homeDisk(const QString& key) const {
    return disks_.isEmpty() ? QVariant() : disks_.front().toMap().value(key);
}

bool DashboardModel::isFirstTime() const {
    return isLoaded_ && scans_.isEmpty() && statistics_.operations == 0;
}

QString DashboardModel::reclaimedLabel() const {
    return Texts::sentence(AuditText::lifetimeReclaimed);
}

QString DashboardModel::reclaimedText() const {
    return isLoaded_ ? Texts::bytes(statistics_.lifetimeReclaimed) : QString();
}

QString DashboardModel::operationsLabel() const {
    return Texts::sentence(AuditText::operationsRecorded);
}

QString DashboardModel::operationsText() const {
    return isLoaded_ ? Texts::count(statistics_.operations) : QString();
}

QString DashboardModel::chainText() const {
    return Texts::sentence(statistics_.status);
}

} // namespace korvane
