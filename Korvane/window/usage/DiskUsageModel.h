#pragma once

#include "Korvane/tools/DiskUsageBrowser.h"
#include "Korvane/tools/Services.h"
#include "Korvane/window/support/Work.h"

#include <QAbstractListModel>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariant>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// The entries of the folder that the user is in, largest first, for a list and a treemap alike.
class DiskUsageModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, in WindowContext")
    Q_PROPERTY(State state READ state NOTIFY changed)
    /// The names of the folders from the one opened to the one on show.
    Q_PROPERTY(QStringList crumbs READ crumbs NOTIFY changed)
    Q_PROPERTY(bool canGoUp READ canGoUp NOTIFY changed)
    Q_PROPERTY(QString folderPath READ folderPath NOTIFY changed)
    /// What is being measured, or why there is nothing to show.
    Q_PROPERTY(QString message READ message NOTIFY changed)
    /// How much there is on show.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    /// The kinds that occur, those that take most first: {kind, title, text}.
    Q_PROPERTY(QVariantList legend READ legend NOTIFY changed)

  public:
    enum State { Idle, Measuring, Shown, Failed };
    Q_ENUM(State)
    enum Role {
        Name = Qt::UserRole + 1,
        SizeText,
        ShareText,
        Bar, ///< 0 to 1: against the largest entry
        Kind,
        IconName,
        IsFolder,
        Spoken ///< the whole row for a screen reader
    };

    /// `services` must outlive the model.
    explicit DiskUsageModel(Services& services, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] State state() const { return state_; }
    [[nodiscard]] QStringList crumbs() const;
    [[nodiscard]] bool canGoUp() const { return crumbs_.size() > 1; }
    [[nodiscard]] QString folderPath() const;
    [[nodiscard]] QString message() const { return message_; }
    [[nodiscard]] QString summary() const;
    [[nodiscard]] QVariantList legend() const;

    Q_INVOKABLE void openHome();
    Q_INVOKABLE void openFolder(const QUrl& folder);
    /// Goes into a folder; the row of a file does nothing.
    Q_INVOKABLE void enter(int row);
    Q_INVOKABLE void goTo(int crumb);
    Q_INVOKABLE void goUp();
    /// Measures the folder on show anew.
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void stop();
    /// {name, path, figures, plainPath, url, isFolder}; empty for a row that is not there.
    Q_INVOKABLE QVariantMap entry(int row) const;

    // For the treemap, which paints every row.
    [[nodiscard]] std::span<const double> sizes() const { return sizes_; }
    [[nodiscard]] std::size_t kind(int row) const { return kinds_[static_cast<std::size_t>(row)]; }
    [[nodiscard]] QString name(int row) const;
    [[nodiscard]] QString sizeText(int row) const;

  signals:
    void changed();
    void notified(const QString& sentence);

  private:
    void open(const FileURL& folder);
    void navigate(std::vector<FileURL> crumbs, std::function<void(DiskUsageBrowser&)> move);
    void show(const DiskUsageBrowser::View& view, std::vector<std::uint8_t> kinds);
    [[nodiscard]] const DiskUsageNode& node(int row) const;

    Services& services_;
    DiskUsageBrowser browser_;
    State state_ = Idle;
    std::vector<FileURL> crumbs_;
    QString message_;
    std::shared_ptr<const DiskUsageBrowser::Listing> listing_; ///< null unless `Shown`
    std::vector<double> sizes_;
    std::vector<std::uint8_t> kinds_;
    std::int64_t total_ = 0;
    Work work_; ///< last: ends before what it works with goes
};

} // namespace korvane
