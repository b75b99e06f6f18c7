#pragma once

#include "Korvane/tools/Services.h"
#include "Korvane/window/audit/AuditChain.h"
#include "Korvane/window/audit/AuditReading.h"
#include "Korvane/window/audit/ReclaimedChart.h"
#include "Korvane/window/restore/RestoreRun.h"
#include "Korvane/window/support/Work.h"

#include <QAbstractListModel>
#include <QString>
#include <QUrl>
#include <QVariant>
#include <memory>
#include <unordered_map>
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

    Q_PROPERTY(korvane::AuditChain* chain READ chain CONSTANT)
    Q_PROPERTY(korvane::ReclaimedChart* chart READ chart CONSTANT)
    Q_PROPERTY(bool verifying READ isVerifying NOTIFY verifyingChanged)

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
    [[nodiscard]] AuditChain* chain() { return &chain_; }
    [[nodiscard]] ReclaimedChart* chart() { return &chart_; }
    [[nodiscard]] bool isVerifying() const { return reading_.isRunning(); }
    [[nodiscard]] QString problem() const { return problem_; }
    [[nodiscard]] RestoreRun* run() { return &run_; }
    [[nodiscard]] static QVariantMap words();

    void setQuery(const QString& query);
    void setModule(int module);

    /// Reads and verifies anew; a reading under way is followed by another.
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void setOpen(int row, bool open);
    /// Puts everything of an operation back that is in the Bin.
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
    void verifyingChanged();
    void problemChanged();
    void replacementAsked(const QUrl& file, const QString& question);
    void notified(const QString& sentence);
    /// The log grew, or items came back. The owner has the model read anew.
    void recorded();

  private:
    struct Row {
        RowKind kind = Operation;
        std::uint32_t entry = 0; ///< its place in the log; of a day: the day's number
        std::uint32_t path = 0;
    };
    /// By operation, its items that are still in the Bin.
    using InBin = std::unordered_map<UUID, std::vector<RestorableItem>>;
    /// What is on show: `places` of `log`.
    struct View {
        std::shared_ptr<const AuditReading> log;
        std::vector<std::size_t> places;
        std::vector<Row> rows;
    };

    void search();
    void show(std::shared_ptr<const AuditReading> log, std::vector<std::size_t> places);
    void showInBin(InBin inBin);
    void showProblem(const QString& problem);
    [[nodiscard]] bool isOpen(std::size_t row) const;
    [[nodiscard]] QVariant operationData(const AuditEntry& entry, std::size_t row, int role) const;
    [[nodiscard]] QVariant pathData(const std::string& text, int role) const;

    Services& services_;
    std::shared_ptr<const AuditReading> log_; ///< the newest; shown when the search in it has ended
    View view_;
    std::unordered_set<UUID> open_;
    InBin inBin_;
    QString query_;
    std::string module_; ///< a scanner id; empty: all
    QString problem_;
    bool readsAgain_ = false;
    AuditChain chain_;
    ReclaimedChart chart_;
    RestoreRun run_;
    Work reading_;
    Work searching_;
    Work writing_;
};

} // namespace korvane
