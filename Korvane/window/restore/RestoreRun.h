#pragma once

#include "Korvane/tools/Services.h"
#include "Korvane/window/support/Work.h"
#include "KorvaneCore/cleaning/Restorer.h"

#include <QAbstractListModel>
#include <QString>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// Puts items back, one lot at a time, and tells how that went. Its rows are the items that did not
/// come back.
class RestoreRun : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A screen that restores has one")
    Q_PROPERTY(bool running READ isRunning NOTIFY changed)
    /// What is under way, or how the last run ended; empty when there is nothing to say.
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(bool failed READ hasFailed NOTIFY changed)

  public:
    enum Role { Path = Qt::UserRole + 1, Problem, Spoken };

    explicit RestoreRun(Services& services, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] bool isRunning() const { return work_.isRunning(); }
    [[nodiscard]] QString message() const { return message_; }
    [[nodiscard]] bool hasFailed() const { return !failures_.empty(); }

    /// Does nothing while a run is under way or without items.
    void start(std::vector<RestorableItem> items);
    /// Forgets how the last run ended.
    Q_INVOKABLE void dismiss();

  signals:
    void changed();
    void finished();

  private:
    void show(QString message, std::vector<RestoreFailure> failures);

    Services& services_;
    QString message_;
    std::vector<RestoreFailure> failures_;
    Work work_;
};

} // namespace korvane
