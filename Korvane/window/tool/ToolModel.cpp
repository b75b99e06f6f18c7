#include "Korvane/window/tool/ToolModel.h"

#include "Korvane/cleaning/PathProtection.h"
#include "Korvane/tools/Confirmation.h"
#include "Korvane/tools/Preselection.h"
#include "Korvane/tools/Services.h"
#include "Korvane/window/support/Texts.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Text.h"

#include <algorithm>
#include <cmath>

namespace korvane {

ToolModel::ToolModel(const Tool& tool, Services& services, const CollectorStore& staged,
                     QObject* parent)
    : QObject(parent), tool_(tool), services_(services), staged_(staged), results_(services.home()),
      outcome_(services.home()) {
    if (tool_.options.scopes) {
        std::copy_if(allSmartScanScopes.begin(), allSmartScanScopes.end(),
                     std::back_inserter(relevantScopes_),
                     [&](SmartScanScope scope) { return isRelevant(scope, services_.home()); });
        scopes_ = relevantScopes_;
    }
    connect(&results_, &ResultModel::refused, this, &ToolModel::notified);
}

QString ToolModel::toolID() const {
    return Texts::sentence(tool_.id);
}

ToolDriver& ToolModel::driver() {
    if (!driver_) {
        driver_.emplace(std::string(tool_.id), services_);
    }
    return *driver_;
}

QString ToolModel::progressText() const {
    return fraction_ < 0 ? QString()
                         : tr("%1 %").arg(static_cast<int>(std::floor(fraction_ * 100)));
}

QString ToolModel::needs() const {
    return Texts::sentence(rawValue(tool_.needs));
}

QString ToolModel::subject() const {
    switch (tool_.needs) {
    case Tool::Needs::folder:
        return request_.folder.path().empty()
                   ? QString()
                   : Texts::path(request_.folder.path(), services_.home());
    case Tool::Needs::app:
        return applicationTitle_;
    case Tool::Needs::nothing:
        break;
    }
    return {};
}

QUrl ToolModel::folder() const {
    return Texts::qtURL(request_.folder.path().empty() ? services_.home() : request_.folder);
}

bool ToolModel::canScan() const {
    return tool_.needs == Tool::Needs::nothing || !subject().isEmpty();
}

QVariantList ToolModel::scopes() const {
    QVariantList list;
    for (const SmartScanScope scope : relevantScopes_) {
        const bool on = std::find(scopes_->begin(), scopes_->end(), scope) != scopes_->end();
        list.append(
            QVariantMap{{QStringLiteral("id"), Texts::sentence(rawValue(scope))},
                        {QStringLiteral("title"), Texts::sentence(title(scope))},
                        {QStringLiteral("explanation"), Texts::sentence(explanation(scope))},
                        {QStringLiteral("on"), on}});
    }
    return list;
}

void ToolModel::setScope(const QString& id, bool on) {
    const auto scope = smartScanScopeFromRawValue(id.toStdString());
    if (!scope || !scopes_) {
        return;
    }
    std::erase(*scopes_, *scope);
    if (on) {
        scopes_->push_back(*scope);
        std::sort(scopes_->begin(), scopes_->end());
    }
    emit scopesChanged();
}

bool ToolModel::isPermanent() const {
    return DeletionPreference::current(services_.defaults()) == DeletionMode::permanent;
}

QString ToolModel::cleaningTitle() const {
    return cleaningMode_ == DeletionMode::permanent ? tr("Deleting permanently…")
                                                    : tr("Moving to the Bin…");
}

QString ToolModel::actionTitle() const {
    return Texts::sentence(korvane::actionTitle(DeletionPreference::current(services_.defaults())));
}

QString ToolModel::found() const {
    return phase_ == Results && results_.totalCount() > 0 ? results_.totalText() : QString();
}

void ToolModel::setFolder(const QUrl& folder) {
    const FileURL chosen = Texts::fileURL(folder);
    if (tool_.needs != Tool::Needs::folder) {
        return;
    }
    if (chosen.path().empty()) {
        emit notified(tr("That is no folder of this computer."));
        return;
    }
    request_.folder = chosen;
    emit subjectChanged();
}

void ToolModel::useHomeFolder() {
    request_.folder = services_.home();
    emit subjectChanged();
}

void ToolModel::setApplication(std::string application, const QString& title) {
    request_.app = std::move(application);
    applicationTitle_ = title;
    emit subjectChanged();
}

void ToolModel::setPhase(Phase phase) {
    phase_ = phase;
    emit phaseChanged();
    emit foundChanged();
}

void ToolModel::report(const QString& message, double fraction) {
    message_ = message;
    fraction_ = fraction;
    emit progressChanged();
}

void ToolModel::show(ReviewTable table) {
    ReviewSelection selection(table);
    results_.show(std::move(table), std::move(selection));
    setPhase(Results);
}

void ToolModel::scan() {
    if (phase_ == Scanning || phase_ == Cleaning) {
        return;
    }
    if (!canScan() || (scopes_ && scopes_->empty())) {
        emit notified(scopes_ ? tr("Choose what to look for first.")
                              : tr("Choose what to look at first."));
        return;
    }
    pending_.reset();
    failure_.clear();
    isPartial_ = false;
    results_.clear();
    report({}, -1);
    setPhase(Scanning);
    clock_.start();
    ScanRequest request = request_;
    request.scopes = scopes_;
    work_.start([this, &tool = tool_, &services = services_, &driver = driver(),
                 request = std::move(request)](const Work::Post& post) -> Work::Step {
        const auto failed = [this](const std::string& sentence) -> Work::Step {
            return [this, text = Texts::sentence(sentence)] {
                failure_ = text;
                setPhase(Failed);
                emit scanFinished();
            };
        };
        ProgressThrottle throttle;
        const auto onProgress = [&](const ScanProgress& progress) {
            if (throttle.isDue()) {
                post([this, text = Texts::data(progress.message),
                      fraction = progress.fraction.value_or(-1)] { report(text, fraction); });
            }
        };
        try {
            const auto scanner = ToolCatalogue::makeScanner(tool, request, services);
            if (!driver.scan(*scanner, onProgress)) {
                return failed(driver.failure());
            }
        } catch (const ScanRequestError& error) {
            return failed(error.what());
        }
        auto table = std::make_shared<ReviewTable>(driver.review(), services.home());
        return [this, table, stopped = Task::isCancelled()] {
            isPartial_ = stopped;
            scanSeconds_ = static_cast<double>(clock_.elapsed()) / 1000;
            show(std::move(*table));
            emit scanFinished();
        };
    });
}

void ToolModel::lookForPrevious() {
    looking_.start([this, &services = services_, id = std::string(tool_.id)](const Work::Post&) {
        return Work::Step([this, found = services.scanCache().has(id)] {
            hasPrevious_ = found;
            emit previousFound();
        });
    });
}

void ToolModel::showPrevious() {
    if (phase_ == Scanning || phase_ == Cleaning) {
        return;
    }
    work_.start([this, &services = services_, &driver = driver()](const Work::Post&) -> Work::Step {
        if (!driver.loadPrevious()) {
            return [this] { emit notified(tr("There is no earlier result of this tool.")); };
        }
        auto table = std::make_shared<ReviewTable>(driver.review(), services.home());
        return [this, table] {
            isPartial_ = false;
            show(std::move(*table));
        };
    });
}

void ToolModel::stop() {
    wasStopped_ = true;
    work_.cancel();
}

void ToolModel::reset() {
    if (phase_ == Cleaning) {
        return;
    }
    work_.cancel();
    pending_.reset();
    results_.clear();
    outcome_.clear();
    setPhase(Idle);
}

void ToolModel::leaveOneCopy(std::unordered_set<UUID>& ids) {
    const auto shown = driver().review();
    if (!shown) {
        return;
    }
    const std::size_t before = ids.size();
    const ScanResult* result = &shown->result;
    keepOneCopyOfEach({&result, 1}, ids, staged_.items());
    if (ids.size() < before) {
        emit notified(tr("One copy of every file stays, and the Collector holds others."));
    }
}

std::vector<ScanItem> ToolModel::itemsToCollect(std::unordered_set<UUID> ids) {
    const auto shown = driver().review();
    std::erase_if(ids, [&](const UUID& id) {
        const bool mustStay = shown && shown->refused.contains(id);
        if (mustStay) {
            emit notified(Texts::sentence(shown->refused.at(id)));
        }
        return mustStay;
    });
    leaveOneCopy(ids);
    return driver().items(ids);
}

QVariantMap ToolModel::ask(std::unordered_set<UUID> ids, const QString& warning) {
    pending_.reset();
    if (phase_ == Cleaning || phase_ == Scanning) {
        return {};
    }
    leaveOneCopy(ids);
    const std::vector<ScanItem> items = driver().items(ids);
    if (items.empty()) {
        return {};
    }
    const DeletionMode mode = DeletionPreference::current(services_.defaults());
    const Confirmation confirmation = makeConfirmation(mode, items);
    pending_ = Pending{std::move(ids), mode};
    return {{QStringLiteral("count"), Texts::count(static_cast<std::int64_t>(items.size()))},
            {QStringLiteral("size"), Texts::bytes(confirmation.selectedBytes)},
            {QStringLiteral("question"), Texts::sentence(confirmation.question)},
            {QStringLiteral("consequence"), Texts::sentence(confirmation.consequence)},
            {QStringLiteral("action"), Texts::sentence(confirmation.actionTitle)},
            {QStringLiteral("permanent"), mode == DeletionMode::permanent},
            {QStringLiteral("warning"), warning}};
}

QVariantMap ToolModel::prepare() {
    if (phase_ != Results) {
        return {};
    }
    return ask(results_.selectedIDs(),
               results_.selectionWarning() == 0 ? QString() : results_.selectionDetail());
}

QVariantMap ToolModel::prepareRetry() {
    std::unordered_set<UUID> ids;
    for (const CleanupFailure& failure : outcome_.result().failed) {
        ids.insert(failure.item.id);
    }
    return phase_ == Finished ? ask(std::move(ids), {}) : QVariantMap();
}

void ToolModel::confirm() {
    if (!pending_) {
        return;
    }
    const Pending pending = *pending_;
    pending_.reset();
    wasStopped_ = false;
    cleaningMode_ = pending.mode;
    report({}, 0);
    setPhase(Cleaning);
    work_.start([this, &driver = driver(), pending](const Work::Post& post) -> Work::Step {
        ProgressThrottle throttle;
        const auto result =
            driver.clean(pending.ids, pending.mode, [&](const CleanupProgress& progress) {
                if (throttle.isDue()) {
                    post([this, progress] {
                        report(tr("%1 of %2 items, %3")
                                   .arg(Texts::count(progress.processed),
                                        Texts::count(progress.total),
                                        Texts::bytes(progress.bytesReclaimed)),
                               progress.total > 0 ? static_cast<double>(progress.processed) /
                                                        static_cast<double>(progress.total)
                                                  : 0);
                    });
                }
            });
        return [this, result] {
            if (!result) {
                setPhase(Results);
                return;
            }
            outcome_.show(*result, wasStopped_);
            setPhase(Finished);
            emit cleaned();
        };
    });
}

void ToolModel::protect(int row) {
    const ScanItem* item = results_.itemAt(row);
    if (item == nullptr || phase_ != Results) {
        return; // it would end what is under way
    }
    Exclusion exclusion;
    exclusion.path = item->path();
    exclusion.note = tr("Protected from the results of %1")
                         .arg(Texts::sentence(tool_.displayName))
                         .toStdString();
    const QString name = Texts::data(item->url.lastPathComponent());
    work_.start([this, exclusion, name, &services = services_](const Work::Post&) -> Work::Step {
        try {
            services.exclusions().add(exclusion);
        } catch (const std::exception& error) {
            return [this, text = localizedDescription(error)] {
                emit notified(Texts::sentence(protectionFailureTitle) + QStringLiteral(": ") +
                              Texts::sentence(text));
            };
        }
        return [this, name] {
            emit notified(tr("%1 is protected. No tool removes it until you take it off the list "
                             "of protected paths.")
                              .arg(name));
            emit protectionChanged();
        };
    });
}

void ToolModel::judgeAgain() {
    if (phase_ != Results) {
        return;
    }
    work_.start([this, &services = services_, &driver = driver()](const Work::Post&) -> Work::Step {
        if (!driver.judgeAgain()) {
            return {};
        }
        auto table = std::make_shared<ReviewTable>(driver.review(), services.home());
        return [this, table] {
            if (phase_ == Results) {
                results_.update(std::move(*table));
            }
        };
    });
}

} // namespace korvane
