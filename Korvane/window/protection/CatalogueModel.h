#pragma once

#include "KorvaneCore/scan/PathHeuristic.h"

#include <QAbstractListModel>
#include <QString>
#include <QStringList>
#include <string>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// Every place that may ever be proposed, as far as the search and the filters let it through.
class CatalogueModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, in WindowContext")
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY filterChanged)
    /// The row of `tools`; 0 lets all through.
    Q_PROPERTY(int toolIndex READ toolIndex WRITE setToolIndex NOTIFY filterChanged)
    /// The row of `risks`; 0 lets all through.
    Q_PROPERTY(int riskIndex READ riskIndex WRITE setRiskIndex NOTIFY filterChanged)
    Q_PROPERTY(QStringList tools READ tools CONSTANT)
    Q_PROPERTY(QStringList risks READ risks CONSTANT)
    Q_PROPERTY(int count READ count NOTIFY filterChanged)
    /// "98 places", "3 of 98 places".
    Q_PROPERTY(QString countText READ countText NOTIFY filterChanged)

  public:
    enum Role {
        RowID = Qt::UserRole + 1,
        Name,
        Category,
        Pattern,
        Risk,
        RiskExplanation,
        WhySafe,
        ToolName,
        ScannerID,
        Spoken,
    };

    explicit CatalogueModel(QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
    /// The roles of a row by name; empty for a row that is not there.
    [[nodiscard]] Q_INVOKABLE QVariantMap get(int row) const;
    Q_INVOKABLE void clearFilters();

    [[nodiscard]] QString query() const { return query_; }
    void setQuery(const QString& query);
    [[nodiscard]] int toolIndex() const { return toolIndex_; }
    void setToolIndex(int index);
    [[nodiscard]] int riskIndex() const { return riskIndex_; }
    void setRiskIndex(int index);
    [[nodiscard]] QStringList tools() const;
    [[nodiscard]] QStringList risks() const;
    [[nodiscard]] int count() const { return static_cast<int>(shown_.size()); }
    [[nodiscard]] QString countText() const;

  signals:
    void filterChanged();

  private:
    struct Place {
        const PathHeuristic* row = nullptr;
        std::string searchKey;
    };

    void filter();

    std::vector<Place> places_;
    std::vector<std::string_view> scanners_;
    std::vector<const PathHeuristic*> shown_;
    QString query_;
    int toolIndex_ = 0;
    int riskIndex_ = 0;
};

} // namespace korvane
