#include "Korvane/window/settings/SettingsModel.h"

#include "Korvane/audit/AuditText.h"
#include "Korvane/window/support/Texts.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/scan/PathHeuristics.h"

#include <QSettings>
#include <algorithm>

namespace korvane {

namespace {

const QString rendererSetting = QStringLiteral("window/renderer");
const QString notifySetting = QStringLiteral("window/notify");

QVariantMap problemValues(const AccessProblem& problem, const FileURL& home) {
    const PathHeuristic* row = PathHeuristics::heuristic(problem.id);
    return {{QStringLiteral("name"),
             Texts::sentence(row == nullptr ? std::string_view(problem.id) : row->displayName)},
            {QStringLiteral("path"), Texts::path(problem.url.path(), home)},
            {QStringLiteral("error"), Texts::data(problem.error)}};
}

} // namespace

SettingsModel::SettingsModel(Services& services, QObject* parent)
    : QObject(parent), services_(services) {
    const QSettings settings;
    usesGraphicsCard_ = settings.value(rendererSetting).toString() == QLatin1String("gpu");
    usedGraphicsCard_ = usesGraphicsCard_;
    notifies_ = settings.value(notifySetting, true).toBool();
    connect(&probing_, &Work::runningChanged, this, &SettingsModel::probingChanged);
    refresh();
}

void SettingsModel::refresh() {
    if (!deletion_.isRunning()) {
        deletion_.start([this, &services = services_](const Work::Post& /*post*/) -> Work::Step {
            return [this, mode = DeletionPreference::current(services.defaults())] {
                mode_ = mode;
                emit deletionChanged();
            };
        });
    }
    probe();
}

void SettingsModel::setDeletesPermanently(bool permanently) {
    const DeletionMode wanted = permanently ? DeletionMode::permanent : DeletionMode::trash;
    deletion_.start([this, wanted, &services = services_](const Work::Post& /*post*/) {
        QString failure;
        try {
            DeletionPreference::setCurrent(services.defaults(), wanted);
        } catch (const std::exception& error) {
            failure = Texts::sentence(localizedDescription(error));
        }
        return [this, failure, mode = DeletionPreference::current(services.defaults())] {
            mode_ = mode;
            deletionFailure_ = failure;
            emit deletionChanged();
        };
    });
}

QString SettingsModel::deletionConsequence() const {
    return Texts::sentence(consequence(mode_, 0));
}

void SettingsModel::setUsesGraphicsCard(bool uses) {
    if (uses != usesGraphicsCard_) {
        usesGraphicsCard_ = uses;
        QSettings().setValue(rendererSetting,
                             uses ? QStringLiteral("gpu") : QStringLiteral("software"));
        emit rendererChanged();
    }
}

void SettingsModel::setNotifies(bool notifies) {
    if (notifies != notifies_) {
        notifies_ = notifies;
        QSettings().setValue(notifySetting, notifies);
        emit notifiesChanged();
    }
}

void SettingsModel::probe() {
    if (probing_.isRunning()) {
        return;
    }
    probing_.start([this, home = services_.home()](const Work::Post& /*post*/) -> Work::Step {
        QVariantList problems;
        for (const AccessProblem& problem : probeAccess(home)) {
            problems.append(problemValues(problem, home));
        }
        return [this, problems] {
            problems_ = problems;
            hasProbed_ = true;
            emit probed();
        };
    });
}

QString SettingsModel::accessSummary() const {
    if (!hasProbed_) {
        return tr("Trying every place of the catalogue…");
    }
    if (problems_.isEmpty()) {
        return tr("Every place of the catalogue that exists can be read.");
    }
    return problems_.size() == 1
               ? tr("1 place cannot be read. What scans find there is incomplete.")
               : tr("%1 places cannot be read. What scans find there is incomplete.")
                     .arg(Texts::count(problems_.size()));
}

QString SettingsModel::logExplanation() const {
    return Texts::sentence(AuditText::settingsExplanation);
}

QString SettingsModel::revealLogs() const {
    return Texts::sentence(AuditText::revealLogs);
}

QString SettingsModel::logFolder() const {
    return Texts::sentence(services_.folders().support("Audit").absoluteString());
}

} // namespace korvane
