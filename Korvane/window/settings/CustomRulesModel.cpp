#include "Korvane/window/settings/CustomRulesModel.h"

#include "Korvane/tools/NewCustomRule.h"
#include "Korvane/window/support/Texts.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/scanners/LinuxRulePreset.h"

#include <algorithm>

namespace korvane {

CustomRulesModel::CustomRulesModel(Services& services, QObject* parent)
    : QAbstractListModel(parent), services_(services) {
    connect(&work_, &Work::runningChanged, this, &CustomRulesModel::busyChanged);
    refresh();
}

int CustomRulesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant CustomRulesModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const CustomRule& rule = rules_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case RuleID:
        return Texts::sentence(rule.id);
    case Qt::DisplayRole:
    case Name:
        return Texts::data(rule.name);
    case PathText:
        return Texts::data(rule.path);
    case Note:
        return Texts::data(rule.note);
    case Risk:
        return static_cast<int>(rule.risk);
    case Detail: {
        QStringList parts{Texts::data(rule.name)};
        if (rule.enumerateChildren) {
            parts.append(tr("each item in it"));
        }
        if (rule.minimumAgeDays > 0) {
            parts.append(rule.minimumAgeDays == 1
                             ? tr("unchanged for 1 day")
                             : tr("unchanged for %1 days").arg(Texts::count(rule.minimumAgeDays)));
        }
        if (!rule.note.empty()) {
            parts.append(Texts::data(rule.note));
        }
        return parts.join(QStringLiteral(" · "));
    }
    case Spoken:
        return tr("%1, %2, risk %3")
            .arg(Texts::data(rule.name), Texts::data(rule.path),
                 Texts::sentence(rawValue(rule.risk)));
    default:
        return {};
    }
}

QHash<int, QByteArray> CustomRulesModel::roleNames() const {
    return {{RuleID, "ruleID"}, {Name, "name"},     {PathText, "pathText"}, {Note, "note"},
            {Risk, "risk"},     {Detail, "detail"}, {Spoken, "spoken"}};
}

QStringList CustomRulesModel::risks() const {
    return {tr("Low risk"), tr("Medium risk"), tr("High risk")};
}

void CustomRulesModel::refresh() {
    perform([] { return Answer(); });
}

void CustomRulesModel::add(const QString& name, const QString& path, int risk, const QString& note,
                           int minimumAgeDays, bool enumerateChildren) {
    CustomRule rule;
    rule.name = name.trimmed().toStdString();
    rule.path = path.trimmed().toStdString();
    rule.note = note.trimmed().toStdString();
    rule.risk = static_cast<HeuristicRisk>(std::clamp(risk, 0, 2));
    rule.minimumAgeDays = minimumAgeDays;
    rule.enumerateChildren = enumerateChildren;
    try {
        rule = newCustomRule(std::move(rule));
    } catch (const DecodingError& error) {
        problem_ = Texts::sentence(error.what());
        emit answered();
        return;
    }
    perform([rule, &services = services_] {
        Answer answer;
        answer.hasAdded = !services.customRules().add({&rule, 1}).empty();
        answer.notice = tr("The rule \"%1\" was added.").arg(Texts::data(rule.name));
        return answer;
    });
}

void CustomRulesModel::remove(const QString& id) {
    perform([id = id.toStdString(), &services = services_] {
        Answer answer;
        if (services.customRules().remove(id)) {
            answer.notice = tr("The rule is gone. No files were removed.");
        }
        return answer;
    });
}

void CustomRulesModel::addPreset() {
    perform([&services = services_] {
        const std::size_t count = services.customRules().add(linuxRulePreset()).size();
        Answer answer;
        answer.notice =
            count == 0 ? tr("All of these rules are on your list already.")
            : count == 1
                ? tr("1 rule was added.")
                : tr("%1 rules were added.").arg(Texts::count(static_cast<std::int64_t>(count)));
        return answer;
    });
}

void CustomRulesModel::dismissAnswer() {
    problem_.clear();
    notice_.clear();
    emit answered();
}

void CustomRulesModel::perform(std::function<Answer()> change) {
    if (work_.isRunning()) {
        return;
    }
    work_.start([this, change = std::move(change),
                 &services = services_](const Work::Post& /*post*/) -> Work::Step {
        Answer answer;
        std::vector<CustomRule> rules;
        try {
            answer = change();
        } catch (const std::exception& error) {
            answer.failure = Texts::sentence(localizedDescription(error));
        }
        try {
            rules = services.customRules().load();
        } catch (const std::exception& error) {
            answer.failure = Texts::sentence(localizedDescription(error));
        }
        return [this, answer, rules = std::move(rules)]() mutable {
            failure_ = answer.failure;
            problem_ = answer.problem;
            notice_ = answer.notice;
            publish(std::move(rules));
            emit answered();
            if (answer.hasAdded) {
                emit added();
            }
        };
    });
}

void CustomRulesModel::publish(std::vector<CustomRule> rules) {
    if (rules != rules_ || !isLoaded_) {
        beginResetModel();
        rules_ = std::move(rules);
        endResetModel();
    }
    isLoaded_ = true;
    emit countChanged();
}

} // namespace korvane
