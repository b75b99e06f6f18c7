#pragma once

#include "Korvane/audit/AuditReview.h"
#include "Korvane/tools/Services.h"
#include "Korvane/window/support/Work.h"
#include "KorvaneCore/platform/Volumes.h"

#include <QObject>
#include <QString>
#include <QVariant>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// The computer and the records at a glance: disks, what was reclaimed, how the log is, and what
/// the last scans found.
class DashboardModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, in WindowContext")
    /// False until it was read for the first time.
    Q_PROPERTY(bool isLoaded READ isLoaded NOTIFY changed)
    /// Neither a scan nor an operation is on record.
    Q_PROPERTY(bool isFirstTime READ isFirstTime NOTIFY changed)
    /// The home folder's first; each with `name`, `place`, `freeText`, `totalText`, `usedShare` and
    /// `isNearlyFull`.
    Q_PROPERTY(QVariantList disks READ disks NOTIFY changed)
    /// Of the disk with the home folder.
    Q_PROPERTY(QString diskName READ diskName NOTIFY changed)
    Q_PROPERTY(QString freeText READ freeText NOTIFY changed)
    Q_PROPERTY(double usedShare READ usedShare NOTIFY changed)
    Q_PROPERTY(bool isNearlyFull READ isNearlyFull NOTIFY changed)

    Q_PROPERTY(QString reclaimedLabel READ reclaimedLabel CONSTANT)
    Q_PROPERTY(QString reclaimedText READ reclaimedText NOTIFY changed)
    Q_PROPERTY(QString operationsLabel READ operationsLabel CONSTANT)
    Q_PROPERTY(QString operationsText READ operationsText NOTIFY changed)
    Q_PROPERTY(Chain chain READ chain NOTIFY changed)
    Q_PROPERTY(QString chainText READ chainText NOTIFY changed)

    /// The newest first; each with `toolID`, `iconName`, `name`, `when` and `found`.
    Q_PROPERTY(QVariantList scans READ scans NOTIFY changed)

  public:
    /// How the log is.
    enum Chain { Sound, Unattested, Broken };
    Q_ENUM(Chain)

    explicit DashboardModel(Services& services, QObject* parent = nullptr);

    /// Reads everything again; once more when it is asked while it reads.
    Q_INVOKABLE void refresh();

    [[nodiscard]] bool isLoaded() const { return isLoaded_; }
    [[nodiscard]] bool isFirstTime() const;
    [[nodiscard]] QVariantList disks() const { return disks_; }
    [[nodiscard]] QString diskName() const { return homeDisk(QStringLiteral("name")).toString(); }
    [[nodiscard]] QString freeText() const {
        return homeDisk(QStringLiteral("freeText")).toString();
    }
    [[nodiscard]] double usedShare() const {
        return homeDisk(QStringLiteral("usedShare")).toDouble();
    }
    [[nodiscard]] bool isNearlyFull() const {
        return homeDisk(QStringLiteral("isNearlyFull")).toBool();
    }
    [[nodiscard]] QString reclaimedLabel() const;
    [[nodiscard]] QString reclaimedText() const;
    [[nodiscard]] QString operationsLabel() const;
    [[nodiscard]] QString operationsText() const;
    [[nodiscard]] Chain chain() const { return chain_; }
    [[nodiscard]] QString chainText() const;
    [[nodiscard]] QVariantList scans() const { return scans_; }

  signals:
    void changed();

  private:
    struct Found;
    void publish(const Found& found);
    [[nodiscard]] QVariant homeDisk(const QString& key) const;

    Services& services_;
    bool isLoaded_ = false;
    bool isOutdated_ = false;
    QVariantList disks_;
    QVariantList scans_;
    AuditStatistics statistics_;
    Chain chain_ = Unattested;
    Work work_;
};

} // namespace korvane
