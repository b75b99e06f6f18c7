#pragma once

#include "Korvane/window/audit/AuditReading.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// The chart of what was reclaimed by day or week, and the log in two figures.
class ReclaimedChart : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("An AuditModel has one")
    Q_PROPERTY(int period READ period WRITE setPeriod NOTIFY changed)
    Q_PROPERTY(QStringList periods READ periods CONSTANT)
    /// {label, text, share} from the oldest; {text, share} from 0.
    Q_PROPERTY(QVariantList bars READ bars NOTIFY changed)
    Q_PROPERTY(QVariantList ticks READ ticks NOTIFY changed)
    Q_PROPERTY(bool periodIsEmpty READ periodIsEmpty NOTIFY changed)
    Q_PROPERTY(QString periodText READ periodText NOTIFY changed)
    Q_PROPERTY(QString operationsText READ operationsText NOTIFY changed)
    Q_PROPERTY(QString lifetimeText READ lifetimeText NOTIFY changed)

  public:
    using QObject::QObject;

    void show(std::shared_ptr<const AuditReading> reading);

    [[nodiscard]] int period() const { return static_cast<int>(period_); }
    [[nodiscard]] static QStringList periods();
    [[nodiscard]] QVariantList bars() const;
    [[nodiscard]] QVariantList ticks() const;
    [[nodiscard]] bool periodIsEmpty() const { return periodBytes() == 0; }
    [[nodiscard]] QString periodText() const;
    [[nodiscard]] QString operationsText() const;
    [[nodiscard]] QString lifetimeText() const;

    void setPeriod(int period);

  signals:
    void changed();

  private:
    [[nodiscard]] const std::vector<ChartBar>& chart() const;
    [[nodiscard]] std::int64_t periodBytes() const;
    [[nodiscard]] std::int64_t axisTop() const;

    std::shared_ptr<const AuditReading> reading_;
    ChartPeriod period_ = ChartPeriod::daily;
};

} // namespace korvane
