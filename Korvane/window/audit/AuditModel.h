#pragma once

#include "Korvane/audit/AuditQuery.h"
#include "Korvane/audit/AuditReview.h"
#include "Korvane/tools/Services.h"
#include "Korvane/window/restore/RestoreRun.h"
#include "Korvane/window/support/Work.h"

#include <QAbstractListModel>
#include <QString>
#include <QUrl>
#include <QVariant>
#include <array>
#include <memory>
#include <optional>
#include <unordered_set>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// The audit log: whether its chain holds, what was reclaimed, and its operations as one flat list:
/// a row for every day, its operations, and the paths of those that are open. All rows have the
/// same height, so that a view can jump anywhere in 100,000 of them.
class AuditModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, in WindowContext")
    Q_PROPERTY(State state READ state NOTIFY shown)
    /// How many operations are shown: "3 of 1,204 operations".
    Q_PROPERTY(QString countText READ countText NOTIFY shown)
    Q_PROPERTY(bool canExport READ canExport NOTIFY shown)
    /// Where a save dialog begins.
    Q_PROPERTY(QUrl startFolder READ startFolder CONSTANT)

    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    /// The modules in the log behind "All modules", and which of them is chosen.
    Q_PROPERTY(QStringList modules READ modules NOTIFY modulesChanged)
    Q_PROPERTY(int module READ module WRITE setModule NOTIFY modulesChanged)

    Q_PROPERTY(Integrity integrity READ integrity NOTIFY integrityChanged)
    Q_PROPERTY(QString integrityText READ integrityText NOTIFY integrityChanged)
    /// A few words on the chain's state; empty where the text says it all.
    Q_PROPERTY(QString integrityBadge READ integrityBadge NOTIFY integrityChanged)
    /// What else should be known of the chain's key; usually empty.
    Q_PROPERTY(QString keyWarning READ keyWarning NOTIFY integrityChanged)
    Q_PROPERTY(bool verifying READ isVerifying NOTIFY integrityChanged)

    Q_PROPERTY(int period READ period WRITE setPeriod NOTIFY chartChanged)
    Q_PROPERTY(QStringList periods READ periods CONSTANT)
    /// {label, text, share} from the oldest; {text, share} from 0.
    Q_PROPERTY(QVariantList bars READ bars NOTIFY chartChanged)
    Q_PROPERTY(QVariantList ticks READ ticks NOTIFY chartChanged)
    Q_PROPERTY(bool periodIsEmpty READ periodIsEmpty NOTIFY chartChanged)
    Q_PROPERTY(QString periodText READ periodText NOTIFY chartChanged)
    Q_PROPERTY(QString operationsText READ operationsText NOTIFY chartChanged)
    Q_PROPERTY(QString lifetimeText READ lifetimeText NOTIFY chartChanged)

    /// What went wrong with the last export or acknowledgement; empty when nothing did.
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)
    Q_PROPERTY(korvane::RestoreRun* run READ run CONSTANT)
    /// The words of the screen, by name.
    Q_PROPERTY(QVariantMap words READ words CONSTANT)

  public:
    enum Role {
        Kind = Qt::UserRole + 1, ///< a RowKind
        Title,                   ///< the day, the module or a path's name
        Subtitle,                ///< what was done; a path's folder
        When,
        SizeText,
        IconName,
        Foldable, ///< an operation with paths
        Open,
        FoldText, ///< what opening or closing it is called
        CanPutBack,
        Path,  ///< the whole path
        Spoken ///< the whole row for a screen reader
    };
    enum RowKind { Day, Operation, AffectedPath };
    Q_ENUM(RowKind)
    enum State { Loading, Empty, NoMatch, Listed };
    Q_ENUM(State)
    enum Integrity { Unknown, Verified, Broken, Unverifiable, NothingToVerify };
    Q_ENUM(Integrity)

    explicit AuditModel(Services& services, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] State state() const;
    [[nodiscard]] QString countText() const;
    [[nodiscard]] bool canExport() const { return view_.log != nullptr; }
    [[nodiscard]] QUrl startFolder() const;
    [[nodiscard]] QString query() const { return query_; }
    [[nodiscard]] QStringList modules() const;
    [[nodiscard]] int module() const;
    [[nodiscard]] Integrity integrity() const;
    [[nodiscard]] QString integrityText() const;
    [[nodiscard]] QString integrityBadge() const;
    [[nodiscard]] QString keyWarning() const { return keyWarning_; }
    [[nodiscard]] bool isVerifying() const { return reading_.isRunning(); }
    [[nodiscard]] int period() const { return static_cast<int>(period_); }
    [[nodiscard]] static QStringList periods();
    [[nodiscard]] QVariantList bars() const;
    [[nodiscard]] QVariantList ticks() const;
    [[nodiscard]] bool periodIsEmpty() const { return periodBytes() == 0; }
    [[nodiscard]] QString periodText() const;
    [[nodiscard]] QString operationsText() const;
    [[nodiscard]] QString lifetimeText() const;
    [[nodiscard]] QString problem() const { return problem_; }
    [[nodiscard]] RestoreRun* run() { return &run_; }
    [[nodiscard]] static QVariantMap words();

    void setQuery(const QString& query);
    void setModule(int module);
    void setPeriod(int period);

    /// Reads and verifies anew; a reading under way is followed by another.
    Q_INVOKABLE void refresh();
    /// Records why the chain is broken where it was found to be. A blank reason is none.
    Q_INVOKABLE void acknowledge(const QString& reason);
    Q_INVOKABLE void setOpen(int row, bool open);
    /// Puts everything of an operation back.
    Q_INVOKABLE void putBack(int row);
    /// Writes the shown operations. Asks first (`replacementAsked`) when something is at that place
    /// and `replace` is false.
    Q_INVOKABLE void exportTo(const QUrl& file, bool replace);
    /// The proposed file below a folder.
    Q_INVOKABLE QUrl proposedFile(const QUrl& folder) const;
    Q_INVOKABLE void openFolder();
    Q_INVOKABLE void dismissProblem();

  signals:
    void shown();
    void queryChanged();
    void modulesChanged();
    void integrityChanged();
    void chartChanged();
    void problemChanged();
    void replacementAsked(const QUrl& file, const QString& question);
    void notified(const QString& sentence);
    /// The log grew, or items came back. The owner has the model read anew.
    void recorded();

  private:
    /// The log as it was read, with what takes long to work out.
    struct Log {
        std::vector<AuditEntry> entries;
        std::vector<DayRun> days;
        std::vector<std::string> modules;
        std::array<std::vector<ChartBar>, 2> bars; ///< by period
        std::int64_t lifetimeReclaimed = 0;
    };
    struct Row {
        RowKind kind = Operation;
        std::uint32_t entry = 0; ///< its place in the log; of a day: the day's number
        std::uint32_t path = 0;
    };
    /// What is on show: `places` of `log`.
    struct View {
        std::shared_ptr<const Log> log;
        std::vector<std::size_t> places;
        std::vector<Row> rows;
    };

    static std::shared_ptr<const Log> read(Services& services);
    void search();
    void show(std::shared_ptr<const Log> log, std::vector<std::size_t> places);
    void showPutBack(std::unordered_set<UUID> operations);
    void showProblem(const QString& problem);
    [[nodiscard]] std::int64_t periodBytes() const;
    [[nodiscard]] std::int64_t axisTop() const;
    [[nodiscard]] const std::vector<ChartBar>& chart() const;
    [[nodiscard]] bool isOpen(std::size_t row) const;
    [[nodiscard]] QVariant operationData(const AuditEntry& entry, std::size_t row, int role) const;
    [[nodiscard]] QVariant pathData(const std::string& text, int role) const;

    Services& services_;
    std::shared_ptr<const Log> log_; ///< the newest; shown when the search in it has ended
    View view_;
    std::unordered_set<UUID> open_;
    std::unordered_set<UUID> canPutBack_; ///< operations with something still in the Bin
    QString query_;
    std::string module_; ///< a scanner id; empty: all
    ChartPeriod period_ = ChartPeriod::daily;
    std::optional<AuditChainResult> integrity_;
    QString keyWarning_;
    QString problem_;
    bool readsAgain_ = false;
    RestoreRun run_;
    Work reading_;
    Work searching_;
    Work writing_;
};

} // namespace korvane
