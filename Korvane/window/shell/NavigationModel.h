#pragma once

#include <QAbstractListModel>
#include <QString>
#include <string_view>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// The screens, in the order of the sidebar.
class NavigationModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, in WindowContext")

  public:
    enum Role { PageID = Qt::UserRole + 1, Title, IconName, Heading, Badge, Blurb, Source };

    explicit NavigationModel(QObject* parent = nullptr);
    ~NavigationModel() override;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// -1 when there is no such screen.
    [[nodiscard]] Q_INVOKABLE int rowOf(const QString& id) const;
    /// The roles of a row by name; empty for a row that is not there.
    [[nodiscard]] Q_INVOKABLE QVariantMap get(int row) const;
    /// A short text behind the title: what a scan found.
    Q_INVOKABLE void setBadge(const QString& id, const QString& text);

  private:
    struct Page;
    std::vector<Page> pages_;
};

} // namespace korvane
