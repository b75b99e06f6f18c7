#pragma once

#include "Korvane/cleaning/BinEmptying.h"
#include "Korvane/tools/Services.h"
#include "Korvane/window/support/Work.h"
#include "Korvane/window/tool/OutcomeModel.h"

#include <QAbstractListModel>
#include <QString>
#include <QVariant>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// The Bins of all disks that hold anything, and their emptying.
class BinModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, in WindowContext")
    Q_PROPERTY(State state READ state NOTIFY changed)
    Q_PROPERTY(QString totalText READ totalText NOTIFY changed)
    /// "in 2 Bins, 14 items".
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    /// The account of the last emptying; its rows are what stayed.
    Q_PROPERTY(bool hasOutcome READ hasOutcome NOTIFY outcomeChanged)
    Q_PROPERTY(QString outcomeText READ outcomeText NOTIFY outcomeChanged)
    Q_PROPERTY(QString auditFailure READ auditFailure NOTIFY outcomeChanged)
    Q_PROPERTY(korvane::OutcomeModel* outcome READ outcome CONSTANT)

  public:
    enum State { Reading, Ready, Emptying };
    Q_ENUM(State)
    enum Role {
        Title = Qt::UserRole + 1,
        Path,
        Url,
        IconName,
        SizeText,
        CountText,
        Note, ///< what stays or cannot be read; may be empty
        Spoken
    };

    /// `services` must outlive the model.
    explicit BinModel(Services& services, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] State state() const { return state_; }
    [[nodiscard]] bool isEmptying() const { return state_ == Emptying; }
    [[nodiscard]] QString totalText() const;
    [[nodiscard]] QString countText() const;
    [[nodiscard]] bool hasOutcome() const { return outcome_.hasResult(); }
    [[nodiscard]] QString outcomeText() const { return outcomeText_; }
    [[nodiscard]] QString auditFailure() const { return auditFailure_; }
    [[nodiscard]] OutcomeModel* outcome() { return &outcome_; }

    /// Reads the Bins anew, unless they are being emptied.
    Q_INVOKABLE void refresh();
    /// What is asked before a Bin, or all of them, is emptied: {title, text, kept, action}. Exactly
    /// these Bins are emptied by `confirm`. Empty when there is nothing to ask about.
    Q_INVOKABLE QVariantMap prepare(int row);
    Q_INVOKABLE QVariantMap prepareAll();
    Q_INVOKABLE void confirm();
    /// Stops before the next item.
    Q_INVOKABLE void stop();
    Q_INVOKABLE void dismissOutcome();

  signals:
    void changed();
    void outcomeChanged();
    /// Something went from a Bin and the log grew.
    void emptied();

  private:
    QVariantMap ask(std::vector<BinContent> bins);
    void setState(State state);
    void show(std::vector<BinContent> bins);
    void finish(const BinEmptying& account, bool wasStopped);
    [[nodiscard]] QString title(const FileURL& bin) const;

    Services& services_;
    State state_ = Reading;
    std::vector<BinContent> bins_;
    std::vector<BinContent> pending_; ///< what the user is asked about
    OutcomeModel outcome_;
    QString outcomeText_;
    QString auditFailure_;
    Work reading_; ///< last, like the next: end before what they work with goes
    Work emptying_;
};

} // namespace korvane
