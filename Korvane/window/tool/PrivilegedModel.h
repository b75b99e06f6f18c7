#pragma once

#include "Korvane/cleaning/PrivilegedRemoval.h"
#include "Korvane/window/support/Work.h"
#include "Korvane/window/tool/OutcomeModel.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// The removal with administrator rights of what a cleanup was not allowed to remove: asked about
/// with every path, then left to the system's prompt.
class PrivilegedModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, in WindowContext")
    Q_PROPERTY(QString question READ question NOTIFY changed)
    Q_PROPERTY(QString consequence READ consequence NOTIFY changed)
    Q_PROPERTY(QString actionTitle READ actionTitle NOTIFY changed)
    /// Every path that is handed over, with its size, and every one that is not, with the reason.
    Q_PROPERTY(QStringList lines READ lines NOTIFY changed)
    Q_PROPERTY(bool canConfirm READ canConfirm NOTIFY changed)
    Q_PROPERTY(bool isRemoving READ isRemoving NOTIFY changed)
    Q_PROPERTY(QString outcomeText READ outcomeText NOTIFY changed)

  public:
    /// `services` must outlive the model.
    explicit PrivilegedModel(Services& services, QObject* parent = nullptr);

    [[nodiscard]] QString question() const { return question_; }
    [[nodiscard]] QString consequence() const { return consequence_; }
    [[nodiscard]] QString actionTitle() const { return actionTitle_; }
    [[nodiscard]] QStringList lines() const { return lines_; }
    [[nodiscard]] bool canConfirm() const;
    [[nodiscard]] bool isRemoving() const { return isRemoving_; }
    [[nodiscard]] QString outcomeText() const { return outcomeText_; }

    /// Screens what failed for want of rights, and then asks.
    Q_INVOKABLE void prepare(korvane::OutcomeModel* outcome);
    Q_INVOKABLE void confirm();
    /// Lets go of what was asked about.
    Q_INVOKABLE void decline();

  signals:
    void changed();
    void asked();
    void finished();

  private:
    void ask(std::shared_ptr<PrivilegedRequest> request);
    void tell(const PrivilegedRemoval& removal);

    Services& services_;
    std::shared_ptr<PrivilegedRequest> request_;
    QString question_;
    QString consequence_;
    QString actionTitle_;
    QStringList lines_;
    QString outcomeText_;
    bool isRemoving_ = false;
    Work work_; ///< last: ends before what it works with goes
};

} // namespace korvane
