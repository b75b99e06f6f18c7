#pragma once

#include "Korvane/tools/Services.h"
#include "Korvane/window/support/Work.h"

#include <QAbstractListModel>
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// The user's own places, as the file of them has them.
class CustomRulesModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, in WindowContext")
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(bool isLoaded READ isLoaded NOTIFY countChanged)
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY busyChanged)
    /// Why the file could not be read or changed; empty when all is well.
    Q_PROPERTY(QString failure READ failure NOTIFY answered)
    /// Why nobody could follow the rule that was to be added.
    Q_PROPERTY(QString problem READ problem NOTIFY answered)
    /// What the last change did, in a sentence.
    Q_PROPERTY(QString notice READ notice NOTIFY answered)
    Q_PROPERTY(QStringList risks READ risks CONSTANT)

  public:
    enum Role { RuleID = Qt::UserRole + 1, Name, PathText, Note, Risk, Detail, Spoken };

    explicit CustomRulesModel(Services& services, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// `risk` is a row of `risks`. Emits `added` when the rule is in the file.
    Q_INVOKABLE void add(const QString& name, const QString& path, int risk, const QString& note,
                         int minimumAgeDays, bool enumerateChildren);
    Q_INVOKABLE void remove(const QString& id);
    /// Adds the ready rules for this system, those that are not there yet.
    Q_INVOKABLE void addPreset();
    Q_INVOKABLE void dismissAnswer();

    Q_INVOKABLE void refresh();

    [[nodiscard]] int count() const { return static_cast<int>(rules_.size()); }
    [[nodiscard]] bool isLoaded() const { return isLoaded_; }
    [[nodiscard]] bool isBusy() const { return work_.isRunning(); }
    [[nodiscard]] QString failure() const { return failure_; }
    [[nodiscard]] QString problem() const { return problem_; }
    [[nodiscard]] QString notice() const { return notice_; }
    [[nodiscard]] QStringList risks() const;

  signals:
    void countChanged();
    void busyChanged();
    void answered();
    void added();

  private:
    struct Answer {
        QString failure;
        QString problem;
        QString notice;
        bool hasAdded = false;
    };

    void perform(std::function<Answer()> change);
    void publish(std::vector<CustomRule> rules);

    Services& services_;
    std::vector<CustomRule> rules_;
    bool isLoaded_ = false;
    QString failure_;
    QString problem_;
    QString notice_;
    Work work_;
};

} // namespace korvane
