#pragma once

#include "Korvane/collector/CollectorStore.h"
#include "Korvane/window/support/Work.h"
#include "Korvane/window/tool/OutcomeModel.h"
#include "Korvane/window/tool/ToolModel.h"

#include <QAbstractListModel>
#include <QString>
#include <QVariant>
#include <optional>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace korvane {

class Services;

/// The Collector's tray: what was staged from all tools, and its one delete.
class CollectorModel : public QAbstractListModel {
    Q_OBJECT
    Q_MOC_INCLUDE("Korvane/window/tool/ToolModel.h")
    QML_ELEMENT
    QML_UNCREATABLE("There is one, in WindowContext")
    Q_PROPERTY(int count READ count NOTIFY changed)
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    /// What it is called where only its icon is shown: "Collector, 3 items".
    Q_PROPERTY(QString name READ name NOTIFY changed)
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    Q_PROPERTY(QString totalText READ totalText NOTIFY changed)
    Q_PROPERTY(QString deleteTitle READ deleteTitle NOTIFY changed)
    Q_PROPERTY(QString clearTitle READ clearTitle CONSTANT)
    Q_PROPERTY(QString removeTitle READ removeTitle CONSTANT)
    Q_PROPERTY(QString restoreTitle READ restoreTitle CONSTANT)
    Q_PROPERTY(bool isDeleting READ isDeleting NOTIFY deletingChanged)
    Q_PROPERTY(double fraction READ fraction NOTIFY progressChanged)
    Q_PROPERTY(korvane::OutcomeModel* outcome READ outcome CONSTANT)

  public:
    enum Role { Title = Qt::UserRole + 1, Path, SizeText, Category };

    /// Both must outlive the model.
    CollectorModel(CollectorStore& store, Services& services, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] int count() const { return static_cast<int>(items_.size()); }
    [[nodiscard]] QString countText() const;
    [[nodiscard]] QString name() const;
    [[nodiscard]] QString summary() const;
    [[nodiscard]] QString totalText() const;
    [[nodiscard]] QString deleteTitle() const;
    [[nodiscard]] static QString clearTitle();
    [[nodiscard]] static QString removeTitle();
    [[nodiscard]] static QString restoreTitle();
    [[nodiscard]] bool isDeleting() const { return isDeleting_; }
    [[nodiscard]] double fraction() const { return fraction_; }
    [[nodiscard]] OutcomeModel* outcome() { return &outcome_; }

    /// What is ticked in a tool's results, or one of its rows.
    Q_INVOKABLE void stageSelection(korvane::ToolModel* tool);
    Q_INVOKABLE void stageRow(korvane::ToolModel* tool, int row);
    Q_INVOKABLE void removeRow(int row);
    Q_INVOKABLE void clear();

    /// {count, question, consequence, action, permanent}; empty when nothing is staged. In Bin mode
    /// the tray's button is the confirmation; a permanent delete is asked about.
    Q_INVOKABLE QVariantMap prepare();
    /// Removes what was staged when it was asked about; nothing when that has changed since.
    Q_INVOKABLE void confirm();
    Q_INVOKABLE void stop() { work_.cancel(); }
    Q_INVOKABLE void refreshMode() { emit changed(); }

  signals:
    void changed();
    void deletingChanged();
    void progressChanged();
    void finished();

  private:
    void reload();
    [[nodiscard]] DeletionMode mode() const;

    CollectorStore& store_;
    Services& services_;
    std::vector<ScanItem> items_;
    OutcomeModel outcome_;
    bool isDeleting_ = false;
    double fraction_ = 0;
    std::optional<DeletionMode> pending_;
    Work work_; ///< last: ends before what it works with goes
};

} // namespace korvane
