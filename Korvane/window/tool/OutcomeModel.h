#pragma once

#include "KorvaneCore/cleaning/CleanupResult.h"

#include <QAbstractListModel>
#include <QString>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// What a cleanup did not remove, and why: first the failures, then what needed nothing.
class OutcomeModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("What cleans has one")
    Q_PROPERTY(bool hasResult READ hasResult NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString detail READ detail NOTIFY changed)
    Q_PROPERTY(QString succeededText READ succeededText NOTIFY changed)
    Q_PROPERTY(QString failedText READ failedText NOTIFY changed)
    Q_PROPERTY(QString skippedText READ skippedText NOTIFY changed)
    Q_PROPERTY(int failedCount READ failedCount NOTIFY changed)
    Q_PROPERTY(bool canRestore READ canRestore NOTIFY changed)
    /// Whether administrator rights could remove some of what failed.
    Q_PROPERTY(bool rightsCouldHelp READ rightsCouldHelp NOTIFY changed)
    /// Why the log does not show it; empty when it does.
    Q_PROPERTY(QString auditFailure READ auditFailure NOTIFY changed)

  public:
    enum Role { Title = Qt::UserRole + 1, Path, Sentence, Guidance, Failed, Section, Spoken };

    explicit OutcomeModel(FileURL home, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void show(CleanupResult result, bool wasStopped);
    void clear();

    [[nodiscard]] bool hasResult() const { return hasResult_; }
    [[nodiscard]] const CleanupResult& result() const { return result_; }
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString detail() const;
    [[nodiscard]] QString succeededText() const;
    [[nodiscard]] QString failedText() const;
    [[nodiscard]] QString skippedText() const;
    [[nodiscard]] int failedCount() const { return static_cast<int>(result_.failed.size()); }
    [[nodiscard]] bool canRestore() const;
    [[nodiscard]] bool rightsCouldHelp() const;
    [[nodiscard]] QString auditFailure() const;

  signals:
    void changed();

  private:
    FileURL home_;
    CleanupResult result_{};
    bool hasResult_ = false;
    bool wasStopped_ = false;
};

} // namespace korvane
