#pragma once

#include "Korvane/tools/Services.h"
#include "Korvane/window/support/Work.h"

#include <QAbstractListModel>
#include <QList>
#include <QString>
#include <QUrl>
#include <functional>
#include <optional>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// The paths that the user protects, in the order in which they were added.
class ProtectedPathsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, in WindowContext")
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(bool isLoaded READ isLoaded NOTIFY countChanged)
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY busyChanged)
    Q_PROPERTY(QString failureTitle READ failureTitle CONSTANT)
    /// Why the last change could not be kept; empty when it was.
    Q_PROPERTY(QString failure READ failure NOTIFY answered)
    /// Why what was to be added is no path to protect.
    Q_PROPERTY(QString problem READ problem NOTIFY answered)
    /// The sentence about what was removed last, while that can be undone.
    Q_PROPERTY(QString removal READ removal NOTIFY answered)

  public:
    enum Role { ExclusionID = Qt::UserRole + 1, PathText, Note, IsMissing, IconName, Spoken };

    explicit ProtectedPathsModel(Services& services, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// A path as typed. Emits `added` when it is on the list.
    Q_INVOKABLE void add(const QString& path, const QString& note);
    /// What a dialog or a drop handed over.
    Q_INVOKABLE void addURLs(const QList<QUrl>& urls, const QString& note);
    Q_INVOKABLE void remove(int row);
    Q_INVOKABLE void undoRemoval();
    /// Takes away what is said about the last change.
    Q_INVOKABLE void dismissAnswer();

    /// Reads the list again.
    void refresh();

    [[nodiscard]] int count() const { return static_cast<int>(rows_.size()); }
    [[nodiscard]] bool isLoaded() const { return isLoaded_; }
    [[nodiscard]] bool isBusy() const { return changing_.isRunning(); }
    [[nodiscard]] QString failureTitle() const;
    [[nodiscard]] QString failure() const { return failure_; }
    [[nodiscard]] QString problem() const { return problem_; }
    [[nodiscard]] QString removal() const;

  signals:
    void countChanged();
    void busyChanged();
    void answered();
    void added();
    /// The list changed by this model's doing.
    void changed();

  private:
    struct Row {
        Exclusion exclusion;
        bool isMissing = false;
        bool isFolder = false;
    };
    struct Change {
        QString failure{};
        QString problem{};
        std::optional<Exclusion> removed{};
        bool isDone = false;
        bool isAddition = false;
    };

    static std::vector<Row> read(Services& services);
    void addPaths(const std::vector<std::string>& paths, const QString& note);
    void perform(std::function<Change()> change);
    void publish(std::vector<Row> rows);
    [[nodiscard]] QString pathText(const Exclusion& exclusion) const;

    Services& services_;
    std::vector<Row> rows_;
    bool isLoaded_ = false;
    bool isOutdated_ = false;
    QString failure_;
    QString problem_;
    std::optional<Exclusion> removed_;
    Work reading_;
    Work changing_;
};

} // namespace korvane
