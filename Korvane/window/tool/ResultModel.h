#pragma once

#include "Korvane/tools/ReviewSelection.h"
#include "Korvane/tools/ReviewTable.h"
#include "Korvane/window/tool/ResultTexts.h"

#include <QAbstractListModel>
#include <QString>
#include <QVariant>
#include <memory>
#include <unordered_set>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// The results of a tool as one flat list: a row for every group, then its items while it is
/// open. All rows have the same height, so that a view can jump anywhere in 100,000 of them.
class ResultModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A tool has one")
    Q_PROPERTY(int totalCount READ totalCount NOTIFY shownChanged)
    Q_PROPERTY(int foundCount READ foundCount NOTIFY shownChanged)
    Q_PROPERTY(QString totalText READ totalText NOTIFY shownChanged)
    Q_PROPERTY(QString countText READ countText NOTIFY shownChanged)
    /// What changed since the scan before; empty when there was none.
    Q_PROPERTY(QString changeText READ changeText NOTIFY shownChanged)
    /// The largest groups and the rest: {title, text, share}.
    Q_PROPERTY(QVariantList breakdown READ breakdown NOTIFY shownChanged)
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)
    Q_PROPERTY(Order order READ order NOTIFY orderChanged)
    Q_PROPERTY(bool descending READ descending NOTIFY orderChanged)
    Q_PROPERTY(int groupOrder READ groupOrder WRITE setGroupOrder NOTIFY orderChanged)
    Q_PROPERTY(int selectedCount READ selectedCount NOTIFY selectionChanged)
    Q_PROPERTY(QString selectedText READ selectedText NOTIFY selectionChanged)
    /// How many, and what should be known about them.
    Q_PROPERTY(QString selectionDetail READ selectionDetail NOTIFY selectionChanged)
    /// 0 nothing to warn of, 1 some are not shown, 2 some are of high risk.
    Q_PROPERTY(int selectionWarning READ selectionWarning NOTIFY selectionChanged)
    /// The groups hold copies, of which one always stays.
    Q_PROPERTY(bool holdsDuplicates READ holdsDuplicates NOTIFY shownChanged)
    Q_PROPERTY(bool holdsPictures READ holdsPictures NOTIFY shownChanged)

  public:
    enum Role {
        IsGroup = Qt::UserRole + 1,
        Title,
        Subtitle,
        SizeText,
        DateText,
        Risk, ///< 0 low, 1 medium, 2 high, -1 for a group
        Reason,
        Ticked, ///< a Qt::CheckState
        Tickable,
        Open,
        IconName,
        Count, ///< of a group's items, as text
        Mark,  ///< new, grown, kept before, the copy that stays; may be empty
        Picture,
        Spoken ///< the whole row for a screen reader
    };
    enum Order { BySize, ByName, ByDate, ByRisk };
    Q_ENUM(Order)

    explicit ResultModel(FileURL home, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void show(ReviewTable table, ReviewSelection selection);
    /// Shows what became of the same items; ticks, search and order stay.
    void update(ReviewTable table);
    void clear();
    /// The ids of what is ticked, shown or not.
    [[nodiscard]] std::unordered_set<UUID> selectedIDs() const;
    /// Null for a group's row.
    [[nodiscard]] const ScanItem* itemAt(int row) const;

    Q_INVOKABLE void toggle(int row);
    Q_INVOKABLE void setOpen(int row, bool open);
    Q_INVOKABLE void toggleOpen(int row);
    Q_INVOKABLE bool isGroup(int row) const;
    /// The row of the group that a row belongs to.
    Q_INVOKABLE int groupRow(int row) const;
    Q_INVOKABLE void selectSafe();
    Q_INVOKABLE void selectShown();
    Q_INVOKABLE void selectNone();
    /// The same column again turns the order round.
    Q_INVOKABLE void sortBy(korvane::ResultModel::Order order);
    /// Makes a copy the one that stays of its group.
    Q_INVOKABLE void keep(int row);
    /// Everything the details of a row show.
    Q_INVOKABLE QVariantMap details(int row) const;

    [[nodiscard]] int totalCount() const;
    [[nodiscard]] int foundCount() const;
    [[nodiscard]] QString totalText() const;
    [[nodiscard]] QString countText() const;
    [[nodiscard]] QString changeText() const;
    [[nodiscard]] QVariantList breakdown() const;
    [[nodiscard]] QString filter() const { return filter_; }
    void setFilter(const QString& filter);
    [[nodiscard]] Order order() const;
    [[nodiscard]] bool descending() const { return table_.isDescending(); }
    [[nodiscard]] int groupOrder() const { return static_cast<int>(table_.groupOrder()); }
    void setGroupOrder(int order);
    [[nodiscard]] int selectedCount() const { return static_cast<int>(selection_.count()); }
    [[nodiscard]] QString selectedText() const;
    [[nodiscard]] QString selectionDetail() const;
    [[nodiscard]] int selectionWarning() const;
    [[nodiscard]] bool holdsDuplicates() const;
    [[nodiscard]] bool holdsPictures() const;

  signals:
    void shownChanged();
    void filterChanged();
    void orderChanged();
    void selectionChanged();
    /// A tick was refused; the sentence says why.
    void refused(const QString& sentence);

  private:
    struct Row {
        std::uint32_t group = 0; ///< in the table's groups
        std::int32_t item = -1;  ///< in that group's items; -1: the group itself
    };

    void relayout();
    void tellSelection(int first, int last);
    [[nodiscard]] ResultTexts texts() const { return {table_, selection_, home_}; }
    [[nodiscard]] std::size_t itemIndex(const Row& row) const;
    [[nodiscard]] std::size_t hiddenCount() const;
    [[nodiscard]] QVariant valueOfGroup(const Row& row, int role) const;
    [[nodiscard]] QVariant valueOfItem(const Row& row, int role) const;
    [[nodiscard]] QString spokenItem(std::size_t item, const QString& date) const;
    [[nodiscard]] Qt::CheckState groupState(const ReviewTable::Group& group) const;

    FileURL home_;
    ReviewTable table_;
    ReviewSelection selection_;
    std::unordered_set<std::string> closed_; ///< categories whose items are folded away
    std::vector<Row> rows_;
    std::vector<int> groupRows_; ///< by group
    QString filter_;
};

} // namespace korvane
