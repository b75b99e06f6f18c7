#pragma once

#include "Korvane/tools/Services.h"
#include "Korvane/window/restore/RestoreRun.h"
#include "Korvane/window/support/Work.h"
#include "KorvaneCore/cleaning/Restorer.h"

#include <QAbstractListModel>
#include <QString>
#include <unordered_set>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// What can be put back, as one flat list: a row for every operation, then its items while it is
/// open. All rows have the same height.
class RestoreModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, in WindowContext")
    Q_PROPERTY(State state READ state NOTIFY shown)
    /// Of all operations: "12 can be restored".
    Q_PROPERTY(QString summary READ summary NOTIFY shown)
    Q_PROPERTY(QString checkingText READ checkingText CONSTANT)
    Q_PROPERTY(QString restoreText READ restoreText CONSTANT)
    Q_PROPERTY(QString restoreHelp READ restoreHelp CONSTANT)
    Q_PROPERTY(QString emptyTitle READ emptyTitle CONSTANT)
    Q_PROPERTY(QString emptyText READ emptyText CONSTANT)
    Q_PROPERTY(korvane::RestoreRun* run READ run CONSTANT)

  public:
    enum Role {
        IsOperation = Qt::UserRole + 1,
        Title,     ///< the module; an item's name
        Subtitle,  ///< when; an item's folder
        CountText, ///< "3 can be restored"; of an item, when it is gone
        SizeText,
        IconName,
        Open,
        Restorable, ///< an item that is still in the Bin; every operation
        Path,       ///< the whole path of an item
        Spoken      ///< the whole row for a screen reader
    };
    /// Checking only until the first listing is there.
    enum State { Checking, Empty, Listed };
    Q_ENUM(State)

    explicit RestoreModel(Services& services, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] State state() const { return state_; }
    [[nodiscard]] QString summary() const;
    [[nodiscard]] static QString checkingText();
    [[nodiscard]] static QString restoreText();
    [[nodiscard]] static QString restoreHelp();
    [[nodiscard]] static QString emptyTitle();
    [[nodiscard]] static QString emptyText();
    [[nodiscard]] RestoreRun* run() { return &run_; }

    /// Reads anew; a reading under way is followed by another.
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void setOpen(int row, bool open);
    /// Puts back everything of an operation, or one item.
    Q_INVOKABLE void restore(int row);

  signals:
    void shown();
    /// Items came back: the Bin and the log changed. The owner has the model read anew.
    void restored();

  private:
    struct Operation {
        RestorableOp op;
        std::vector<bool> inBin; ///< by item
    };
    struct Row {
        std::size_t operation = 0;
        std::ptrdiff_t item = -1; ///< -1: the operation itself
    };

    void show(std::vector<Operation> operations);
    [[nodiscard]] bool isOpen(std::size_t row) const;
    [[nodiscard]] QVariant operationData(const Operation& operation, std::size_t row,
                                         int role) const;
    [[nodiscard]] QVariant valueOfItem(const Operation& operation, std::size_t item,
                                       int role) const;

    Services& services_;
    std::vector<Operation> operations_;
    std::vector<Row> rows_;
    std::unordered_set<UUID> open_;
    State state_ = Checking;
    bool readsAgain_ = false;
    RestoreRun run_;
    Work reading_;
};

} // namespace korvane
