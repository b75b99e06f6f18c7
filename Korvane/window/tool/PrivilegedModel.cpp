#include "Korvane/window/tool/PrivilegedModel.h"

#include "Korvane/tools/Services.h"
#include "Korvane/window/support/Texts.h"

#include <vector>

namespace korvane {

PrivilegedModel::PrivilegedModel(Services& services, QObject* parent)
    : QObject(parent), services_(services) {}

bool PrivilegedModel::canConfirm() const {
    return request_ && !request_->screening.accepted.empty() && !isRemoving_;
}

void PrivilegedModel::prepare(OutcomeModel* outcome) {
    if (outcome == nullptr || isRemoving_) {
        return;
    }
    std::vector<FileURL> urls;
    for (const CleanupFailure& failure : outcome->result().failed) {
        if (failure.kind == CleanupFailure::Kind::permission) {
            urls.push_back(failure.item.url);
        }
    }
    work_.start([this, urls, &services = services_](const Work::Post&) -> Work::Step {
        auto request =
            std::make_shared<PrivilegedRequest>(preparePrivilegedRemoval(urls, services));
        return [this, request] { ask(request); };
    });
}

void PrivilegedModel::ask(std::shared_ptr<PrivilegedRequest> request) {
    request_ = std::move(request);
    const Confirmation confirmation = makeConfirmation(*request_, Elevation::standard());
    question_ = Texts::sentence(confirmation.question);
    consequence_ = Texts::sentence(confirmation.consequence);
    actionTitle_ = Texts::sentence(confirmation.actionTitle);
    outcomeText_.clear();
    lines_.clear();
    for (std::size_t i = 0; i < request_->screening.accepted.size(); ++i) {
        const auto& accepted = request_->screening.accepted[i];
        lines_.append(
            tr("%1  %2").arg(Texts::bytes(request_->sizes[i]), Texts::data(accepted.url.path())));
    }
    for (const PrivilegedRemover::Refusal& refusal : request_->screening.refusals) {
        lines_.append(tr("Stays: %1. %2")
                          .arg(Texts::data(refusal.url.path()), Texts::sentence(refusal.message)));
    }
    emit changed();
    emit asked();
}

void PrivilegedModel::decline() {
    request_.reset();
    emit changed();
}

void PrivilegedModel::confirm() {
    if (!canConfirm()) {
        return;
    }
    isRemoving_ = true;
    emit changed();
    work_.start([this, request = std::move(request_),
                 &services = services_](const Work::Post&) -> Work::Step {
        const PrivilegedRemoval removal = removeWithPrivileges(std::move(*request), services);
        return [this, removal] { tell(removal); };
    });
}

void PrivilegedModel::tell(const PrivilegedRemoval& removal) {
    QStringList sentences;
    if (!removal.result.removed.empty()) {
        sentences << tr("Removed %1, %2.")
                         .arg(
                             Texts::items(static_cast<std::int64_t>(removal.result.removed.size())),
                             Texts::bytes(removal.bytesReclaimed));
    }
    if (const auto sentence = notice(removal.result)) {
        sentences << Texts::sentence(*sentence);
    }
    for (const PrivilegedRemover::Refusal& refusal : removal.result.refusals) {
        sentences << tr("Not removed: %1. %2")
                         .arg(Texts::data(refusal.url.path()), Texts::sentence(refusal.message));
    }
    for (const FileURL& survivor : removal.result.survivors) {
        sentences << tr("Still there: %1").arg(Texts::data(survivor.path()));
    }
    if (removal.auditFailure) {
        sentences << tr("The removal could not be written to the audit log: %1")
                         .arg(Texts::sentence(*removal.auditFailure));
    }
    outcomeText_ = sentences.join(u'\n');
    isRemoving_ = false;
    emit changed();
    emit finished();
}

} // namespace korvane
