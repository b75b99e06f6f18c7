#pragma once

#include "Korvane/collector/CollectorStore.h"
#include "Korvane/tools/ToolCatalogue.h"
#include "Korvane/tools/ToolDriver.h"
#include "Korvane/window/support/Work.h"
#include "Korvane/window/tool/OutcomeModel.h"
#include "Korvane/window/tool/ResultModel.h"
#include "KorvaneCore/cleaning/DeletionMode.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QVariant>
#include <optional>
#include <unordered_set>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// One tool on screen: the states of its driver, what was found and what became of it.
class ToolModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("WindowContext.tool() hands it out")
    Q_PROPERTY(QString toolID READ toolID CONSTANT)
    Q_PROPERTY(Phase phase READ phase NOTIFY phaseChanged)
    Q_PROPERTY(korvane::ResultModel* results READ results CONSTANT)
    Q_PROPERTY(korvane::OutcomeModel* outcome READ outcome CONSTANT)
    /// What is going on, for people.
    Q_PROPERTY(QString message READ message NOTIFY progressChanged)
    /// 0 to 1; below 0 when it cannot be told.
    Q_PROPERTY(double fraction READ fraction NOTIFY progressChanged)
    Q_PROPERTY(QString progressText READ progressText NOTIFY progressChanged)
    /// "Moving to the Bin…", "Deleting permanently…".
    Q_PROPERTY(QString cleaningTitle READ cleaningTitle NOTIFY phaseChanged)
    Q_PROPERTY(QString failure READ failure NOTIFY phaseChanged)
    /// The scan was stopped: the results are what it had found by then.
    Q_PROPERTY(bool isPartial READ isPartial NOTIFY phaseChanged)
    /// "nothing", "folder" or "app".
    Q_PROPERTY(QString needs READ needs CONSTANT)
    /// The folder or application that is looked at, for people; empty when none is chosen.
    Q_PROPERTY(QString subject READ subject NOTIFY subjectChanged)
    Q_PROPERTY(QUrl folder READ folder NOTIFY subjectChanged)
    Q_PROPERTY(bool canScan READ canScan NOTIFY subjectChanged)
    /// Whether there is a result to show without a scan, as far as `lookForPrevious` has told.
    Q_PROPERTY(bool hasPrevious READ hasPrevious NOTIFY previousFound)
    /// Of a Smart Scan, those with anything to find: {id, title, explanation, on}.
    Q_PROPERTY(QVariantList scopes READ scopes NOTIFY scopesChanged)
    Q_PROPERTY(bool isPermanent READ isPermanent NOTIFY modeChanged)
    Q_PROPERTY(QString actionTitle READ actionTitle NOTIFY modeChanged)

  public:
    enum Phase { Idle, Scanning, Results, Cleaning, Finished, Failed };
    Q_ENUM(Phase)

    /// All three must outlive the model. What is in `staged` goes sooner or later: of a group of
    /// duplicates one copy stays that is not among it.
    ToolModel(const Tool& tool, Services& services, const CollectorStore& staged,
              QObject* parent = nullptr);

    [[nodiscard]] QString toolID() const;
    [[nodiscard]] Phase phase() const { return phase_; }
    [[nodiscard]] ResultModel* results() { return &results_; }
    [[nodiscard]] OutcomeModel* outcome() { return &outcome_; }
    [[nodiscard]] QString message() const { return message_; }
    [[nodiscard]] double fraction() const { return fraction_; }
    [[nodiscard]] QString progressText() const;
    [[nodiscard]] QString cleaningTitle() const;
    [[nodiscard]] QString failure() const { return failure_; }
    [[nodiscard]] bool isPartial() const { return isPartial_; }
    [[nodiscard]] QString needs() const;
    [[nodiscard]] QString subject() const;
    [[nodiscard]] QUrl folder() const;
    [[nodiscard]] bool canScan() const;
    [[nodiscard]] bool hasPrevious() const { return hasPrevious_; }
    [[nodiscard]] QVariantList scopes() const;
    [[nodiscard]] bool isPermanent() const;
    [[nodiscard]] QString actionTitle() const;
    /// What a scan found, as a short text for the sidebar; empty without results.
    [[nodiscard]] QString found() const;
    /// How long the last scan took.
    [[nodiscard]] double scanSeconds() const { return scanSeconds_; }

    Q_INVOKABLE void setFolder(const QUrl& folder);
    Q_INVOKABLE void useHomeFolder();
    /// An installed application by its path, identifier or name, and what people call it.
    void setApplication(std::string application, const QString& title);
    Q_INVOKABLE void setScope(const QString& id, bool on);

    Q_INVOKABLE void scan();
    Q_INVOKABLE void lookForPrevious();
    /// Shows the result of the last scan at once, where there is one.
    Q_INVOKABLE void showPrevious();
    /// Ends a scan or a cleanup early.
    Q_INVOKABLE void stop();
    /// Back to the beginning. Not while cleaning.
    Q_INVOKABLE void reset();

    /// What the user is asked about what is ticked at this moment: {count, question, consequence,
    /// action, permanent, warning}. Exactly these items are removed by `confirm`, whatever is
    /// ticked by then. Empty when nothing is ticked.
    Q_INVOKABLE QVariantMap prepare();
    /// The same for what could not be removed.
    Q_INVOKABLE QVariantMap prepareRetry();
    Q_INVOKABLE void confirm();

    Q_INVOKABLE void protect(int row);
    /// Looks anew at what may be removed of the results on show; ticks stay as far as they may.
    void judgeAgain();
    /// What of these ids the Collector may take: nothing that must stay, and never the last copy
    /// of a file. Says so when something is left out.
    [[nodiscard]] std::vector<ScanItem> itemsToCollect(std::unordered_set<UUID> ids);
    /// Reads the deletion mode again.
    Q_INVOKABLE void refreshMode() { emit modeChanged(); }

  signals:
    void phaseChanged();
    void progressChanged();
    void subjectChanged();
    void previousFound();
    void scopesChanged();
    void modeChanged();
    void foundChanged();
    void scanFinished();
    void cleaned();
    void protectionChanged();
    void notified(const QString& sentence);

  private:
    struct Pending {
        std::unordered_set<UUID> ids;
        DeletionMode mode = DeletionMode::trash;
    };

    void setPhase(Phase phase);
    void show(ReviewTable table);
    void report(const QString& message, double fraction);
    QVariantMap ask(std::unordered_set<UUID> ids, const QString& warning);
    void leaveOneCopy(std::unordered_set<UUID>& ids);
    [[nodiscard]] ToolDriver& driver();

    const Tool& tool_;
    Services& services_;
    const CollectorStore& staged_;
    std::optional<ToolDriver> driver_;
    ResultModel results_;
    OutcomeModel outcome_;
    ScanRequest request_;
    QString applicationTitle_;
    std::vector<SmartScanScope> relevantScopes_; ///< in their order; empty for other tools
    std::optional<std::vector<SmartScanScope>> scopes_;
    Phase phase_ = Idle;
    QString message_;
    double fraction_ = -1;
    QString failure_;
    bool hasPrevious_ = false;
    bool isPartial_ = false;
    bool wasStopped_ = false;
    double scanSeconds_ = 0;
    QElapsedTimer clock_;
    std::optional<Pending> pending_;
    DeletionMode cleaningMode_ = DeletionMode::trash;
    Work looking_;
    Work work_; ///< last: ends before what it works with goes
};

} // namespace korvane
