#pragma once

#include "Korvane/tools/Services.h"
#include "Korvane/window/support/Work.h"
#include "KorvaneCore/cleaning/DeletionMode.h"
#include "KorvaneCore/scan/AccessProbe.h"

#include <QObject>
#include <QString>
#include <QVariant>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// The preferences, and what stands in the way of a complete scan.
class SettingsModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, in WindowContext")
    Q_PROPERTY(bool deletesPermanently READ deletesPermanently NOTIFY deletionChanged)
    /// What the choice in force means; fixed sentences.
    Q_PROPERTY(QString deletionConsequence READ deletionConsequence NOTIFY deletionChanged)
    /// Why the choice could not be kept; empty when it was.
    Q_PROPERTY(QString deletionFailure READ deletionFailure NOTIFY deletionChanged)
    /// Drawn by the graphics card from the next start on, rather than by the processor.
    Q_PROPERTY(bool usesGraphicsCard READ usesGraphicsCard WRITE setUsesGraphicsCard NOTIFY
                   rendererChanged)
    /// The choice is not yet what the window is drawn by.
    Q_PROPERTY(bool needsRestart READ needsRestart NOTIFY rendererChanged)
    /// Tell of the end of a long scan while another window is in front.
    Q_PROPERTY(bool notifies READ notifies WRITE setNotifies NOTIFY notifiesChanged)
    Q_PROPERTY(bool isProbing READ isProbing NOTIFY probingChanged)
    Q_PROPERTY(QString accessSummary READ accessSummary NOTIFY probed)
    /// Each with `name`, `path` and `error`.
    Q_PROPERTY(QVariantList accessProblems READ accessProblems NOTIFY probed)
    Q_PROPERTY(QString logExplanation READ logExplanation CONSTANT)
    Q_PROPERTY(QString revealLogs READ revealLogs CONSTANT)
    /// The folder of the log, as a URL.
    Q_PROPERTY(QString logFolder READ logFolder CONSTANT)

  public:
    explicit SettingsModel(Services& services, QObject* parent = nullptr);

    /// Reads the deletion mode, which other programs may change, and tries all places again.
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void probe();
    Q_INVOKABLE void setDeletesPermanently(bool permanently);

    [[nodiscard]] bool deletesPermanently() const { return mode_ == DeletionMode::permanent; }
    [[nodiscard]] QString deletionConsequence() const;
    [[nodiscard]] QString deletionFailure() const { return deletionFailure_; }
    [[nodiscard]] bool usesGraphicsCard() const { return usesGraphicsCard_; }
    void setUsesGraphicsCard(bool uses);
    [[nodiscard]] bool needsRestart() const { return usesGraphicsCard_ != usedGraphicsCard_; }
    [[nodiscard]] bool notifies() const { return notifies_; }
    void setNotifies(bool notifies);
    [[nodiscard]] bool isProbing() const { return probing_.isRunning(); }
    [[nodiscard]] QString accessSummary() const;
    [[nodiscard]] QVariantList accessProblems() const { return problems_; }
    [[nodiscard]] QString logExplanation() const;
    [[nodiscard]] QString revealLogs() const;
    [[nodiscard]] QString logFolder() const;

  signals:
    void deletionChanged();
    void rendererChanged();
    void notifiesChanged();
    void probingChanged();
    void probed();

  private:
    Services& services_;
    DeletionMode mode_ = DeletionMode::trash;
    QString deletionFailure_;
    bool usesGraphicsCard_ = false;
    bool usedGraphicsCard_ = false; ///< when the program started
    bool notifies_ = true;
    bool hasProbed_ = false;
    QVariantList problems_;
    Work deletion_;
    Work probing_;
};

} // namespace korvane
