#include "Korvane/window/protection/ProtectedPathsModel.h"

#include "Korvane/cleaning/PathProtection.h"
#include "Korvane/window/support/Texts.h"
#include "KorvaneCore/foundation/FileError.h"

#include <algorithm>
#include <memory>

#include <sys/stat.h>

namespace korvane {

namespace {

QString refusalText(ProtectionJudgement judgement) {
    switch (judgement) {
    case ProtectionJudgement::possible:
        break;
    case ProtectionJudgement::empty:
        return ProtectedPathsModel::tr("Type a path, or choose a folder or a file.");
    case ProtectionJudgement::relative:
        return ProtectedPathsModel::tr("A path begins with \"/\", or with \"~\" for your home "
                                       "folder.");
    case ProtectionJudgement::root:
        return ProtectedPathsModel::tr("The whole computer cannot be protected: name what is "
                                       "inside it.");
    }
    return {};
}

} // namespace

ProtectedPathsModel::ProtectedPathsModel(Services& services, QObject* parent)
    : QAbstractListModel(parent), services_(services) {
    connect(&changing_, &Work::runningChanged, this, &ProtectedPathsModel::busyChanged);
    refresh();
}

int ProtectedPathsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant ProtectedPathsModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case ExclusionID:
        return Texts::sentence(row.exclusion.id.text());
    case Qt::DisplayRole:
    case PathText:
        return pathText(row.exclusion);
    case Note:
        return Texts::data(row.exclusion.note);
    case IsMissing:
        return row.isMissing;
    case IconName:
        return row.isMissing  ? QStringLiteral("warning")
               : row.isFolder ? QStringLiteral("folder")
                              : QStringLiteral("file");
    case Spoken: {
        QString text = pathText(row.exclusion);
        if (!row.exclusion.note.empty()) {
            text += QStringLiteral(", ") + Texts::data(row.exclusion.note);
        }
        return row.isMissing ? tr("%1, nothing is there at the moment").arg(text) : text;
    }
    default:
        return {};
    }
}

QHash<int, QByteArray> ProtectedPathsModel::roleNames() const {
    return {{ExclusionID, "exclusionID"}, {PathText, "pathText"}, {Note, "note"},
            {IsMissing, "isMissing"},     {IconName, "iconName"}, {Spoken, "spoken"}};
}

QString ProtectedPathsModel::failureTitle() const {
    return Texts::sentence(protectionFailureTitle);
}

QString ProtectedPathsModel::removal() const {
    return removed_ ? tr("%1 is no longer protected.").arg(pathText(*removed_)) : QString();
}

QString ProtectedPathsModel::pathText(const Exclusion& exclusion) const {
    return Texts::path(exclusion.path, services_.home());
}

std::vector<ProtectedPathsModel::Row> ProtectedPathsModel::read(Services& services) {
    std::vector<Row> rows;
    for (Exclusion& exclusion : services.exclusions().items()) {
        const std::string place = expandingTilde(exclusion.path, services.home());
        struct stat facts {};
        Row row{.exclusion = std::move(exclusion)};
        row.isMissing = lstat(place.c_str(), &facts) != 0;
        row.isFolder = !row.isMissing && S_ISDIR(facts.st_mode);
        rows.push_back(std::move(row));
    }
    return rows;
}

void ProtectedPathsModel::refresh() {
    isOutdated_ = reading_.isRunning();
    if (isOutdated_) {
        return;
    }
    reading_.start([this, &services = services_](const Work::Post& /*post*/) -> Work::Step {
        return [this, rows = read(services)]() mutable { publish(std::move(rows)); };
    });
}

void ProtectedPathsModel::publish(std::vector<Row> rows) {
    const auto sameOnes = [](const Row& a, const Row& b) { return a.exclusion == b.exclusion; };
    if (std::equal(rows.begin(), rows.end(), rows_.begin(), rows_.end(), sameOnes)) {
        rows_ = std::move(rows);
        if (!rows_.empty()) {
            emit dataChanged(index(0), index(count() - 1));
        }
    } else {
        beginResetModel();
        rows_ = std::move(rows);
        endResetModel();
    }
    isLoaded_ = true;
    emit countChanged();
    if (isOutdated_) {
        refresh();
    }
}

void ProtectedPathsModel::add(const QString& path, const QString& note) {
    addPaths({path.trimmed().toStdString()}, note);
}

void ProtectedPathsModel::addURLs(const QList<QUrl>& urls, const QString& note) {
    std::vector<std::string> paths;
    std::transform(urls.begin(), urls.end(), std::back_inserter(paths),
                   [](const QUrl& url) { return Texts::fileURL(url).path(); });
    addPaths(paths, note);
}

void ProtectedPathsModel::addPaths(const std::vector<std::string>& paths, const QString& note) {
    perform([paths, note = note.trimmed().toStdString(), &services = services_] {
        Change change{.isAddition = true};
        for (const std::string& path : paths) {
            const ProtectionJudgement judgement = judgeProtection(path, services.home());
            const FileURL place(expandingTilde(path, services.home()));
            if (judgement != ProtectionJudgement::possible) {
                change.problem = refusalText(judgement);
            } else if (const auto match = services.exclusions().match(place);
                       match && match->match == ExclusionMatch::Case::exact) {
                change.problem =
                    tr("%1 is on the list already.").arg(Texts::path(path, services.home()));
            } else {
                services.exclusions().add({.path = path, .note = note});
                change.isDone = true;
            }
        }
        return change;
    });
}

void ProtectedPathsModel::remove(int row) {
    if (row < 0 || row >= count()) {
        return;
    }
    perform([exclusion = rows_[static_cast<std::size_t>(row)].exclusion, &services = services_] {
        Change change;
        change.isDone = services.exclusions().remove(exclusion.id);
        if (change.isDone) {
            change.removed = exclusion;
        }
        return change;
    });
}

void ProtectedPathsModel::undoRemoval() {
    if (removed_) {
        perform([exclusion = *removed_, &services = services_] {
            services.exclusions().add(exclusion);
            return Change{.isDone = true};
        });
    }
}

void ProtectedPathsModel::dismissAnswer() {
    failure_.clear();
    problem_.clear();
    removed_.reset();
    emit answered();
}

void ProtectedPathsModel::perform(std::function<Change()> change) {
    if (changing_.isRunning()) {
        return;
    }
    changing_.start([this, change = std::move(change),
                     &services = services_](const Work::Post& /*post*/) -> Work::Step {
        Change answer;
        try {
            answer = change();
        } catch (const std::exception& error) {
            answer.failure = Texts::sentence(localizedDescription(error));
        }
        return [this, answer, rows = read(services)]() mutable {
            failure_ = answer.failure;
            problem_ = answer.problem;
            if (answer.isDone) {
                removed_ = answer.removed;
            }
            publish(std::move(rows));
            emit answered();
            if (answer.isDone) {
                emit changed();
            }
            if (answer.isAddition && answer.isDone && problem_.isEmpty()) {
                emit added();
            }
        };
    });
}

} // namespace korvane
