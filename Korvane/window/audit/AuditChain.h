#pragma once

#include "Korvane/tools/Services.h"
#include "Korvane/window/support/Work.h"
#include "KorvaneCore/audit/AuditLog.h"

#include <QObject>
#include <QString>
#include <optional>
#include <string>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// Whether the log's hash chain holds, in words, and the acknowledgement of a break.
class AuditChain : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("An AuditModel has one")
    Q_PROPERTY(Integrity integrity READ integrity NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    /// A few words on the chain's state; empty where the text says it all.
    Q_PROPERTY(QString badge READ badge NOTIFY changed)
    /// What else should be known of the chain's key; usually empty.
    Q_PROPERTY(QString keyWarning READ keyWarning NOTIFY changed)

  public:
    enum Integrity { Unknown, Verified, Broken, Unverifiable, NothingToVerify };
    Q_ENUM(Integrity)

    explicit AuditChain(Services& services) : services_(services) {}

    void show(const AuditChainResult& result, const std::string& keyWarning);

    [[nodiscard]] Integrity integrity() const;
    [[nodiscard]] QString text() const;
    [[nodiscard]] QString badge() const;
    [[nodiscard]] QString keyWarning() const { return keyWarning_; }

    /// Records why the chain is broken where it was found to be. A blank reason is none.
    Q_INVOKABLE void acknowledge(const QString& reason);

  signals:
    void changed();
    /// A note was appended to the log.
    void recorded();
    /// How the note came out: a sentence, or nothing when it was written.
    void ended(const QString& problem);

  private:
    Services& services_;
    std::optional<AuditChainResult> result_;
    QString keyWarning_;
    Work writing_;
};

} // namespace korvane
