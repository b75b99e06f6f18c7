#pragma once

#include "Korvane/tools/Services.h"
#include "Korvane/window/support/Work.h"
#include "KorvaneCore/platform/SoftwareInventory.h"

#include <QAbstractListModel>
#include <QString>
#include <memory>
#include <string>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace korvane {

class ToolModel;

/// The installed applications, by name, to choose one of.
class ApplicationsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, in WindowContext")
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY changed)
    /// Some place could not be read: more may be installed than is listed.
    Q_PROPERTY(bool isComplete READ isComplete NOTIFY changed)
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)

  public:
    enum Role {
        Name = Qt::UserRole + 1,
        Identifier,
        Place,
        Note, ///< when only its data can be removed here; may be empty
        Spoken
    };

    /// Without an inventory that of this system. `services` must outlive the model.
    explicit ApplicationsModel(Services& services,
                               std::shared_ptr<const SoftwareInventory> inventory = nullptr,
                               QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] bool isLoading() const { return isLoading_; }
    [[nodiscard]] bool isComplete() const { return isComplete_; }
    [[nodiscard]] QString countText() const;
    [[nodiscard]] QString filter() const { return filter_; }
    void setFilter(const QString& filter);

    Q_INVOKABLE void refresh();
    /// Tells the tool which application it is about. False when there is no such row.
    Q_INVOKABLE bool choose(int row, korvane::ToolModel* tool) const;

  signals:
    void changed();
    void filterChanged();

  private:
    struct Application {
        QString name;
        QString identifier;
        QString place;
        std::string subject; ///< what the tool takes for it
        bool isRemovable = false;
    };
    struct Listing {
        std::vector<Application> applications;
        bool isComplete = true;
    };

    [[nodiscard]] static Listing read(const SoftwareInventory& inventory, const FileURL& home);
    void show(Listing listing);
    void applyFilter();

    Services& services_;
    std::shared_ptr<const SoftwareInventory> inventory_;
    std::vector<Application> applications_;
    std::vector<std::size_t> rows_; ///< in the applications: those that the filter lets through
    bool isLoading_ = false;
    bool isComplete_ = true;
    QString filter_;
    Work work_; ///< last: ends before what it works with goes
};

} // namespace korvane
