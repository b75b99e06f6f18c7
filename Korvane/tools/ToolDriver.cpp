#include "Korvane/tools/ToolDriver.h"

#include "Korvane/tools/Cleanup.h"
#include "Korvane/tools/Preselection.h"
#include "Korvane/tools/Refusal.h"
#include "Korvane/tools/Services.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Task.h"

#include <algorithm>
#include <exception>

namespace korvane {

namespace {

/// The notes of the user's rules, when a result has items of theirs. A file of rules that was
/// spoilt since the scan costs the notes only.
std::unordered_map<std::string, std::string> ownReasons(const ScanResult& result,
                                                        const Services& services) {
    std::unordered_map<std::string, std::string> reasons;
    const bool hasOwn =
        std::any_of(result.items.begin(), result.items.end(), [](const ScanItem& item) {
            return item.heuristicID.starts_with(customRulePrefix);
        });
    try {
        for (const CustomRule& rule :
             hasOwn ? services.customRules().load() : std::vector<CustomRule>()) {
            reasons.emplace(heuristicID(rule), rule.note);
        }
    } catch (const std::runtime_error&) {
        reasons.clear();
    }
    return reasons;
}

} // namespace

ToolDriver::ToolDriver(std::string scannerID, Services& services)
    : scannerID_(std::move(scannerID)), services_(services) {}

ToolPhase ToolDriver::phase() const {
    const std::lock_guard guard(lock_);
    return phase_;
}

std::string ToolDriver::failure() const {
    const std::lock_guard guard(lock_);
    return failure_;
}

std::shared_ptr<const ToolReview> ToolDriver::review() const {
    const std::lock_guard guard(lock_);
    return review_;
}

std::optional<CleanupResult> ToolDriver::outcome() const {
    const std::lock_guard guard(lock_);
    return outcome_;
}

bool ToolDriver::begin(ToolPhase phase) {
    const std::lock_guard guard(lock_);
    if (phase_ == ToolPhase::scanning || phase_ == ToolPhase::cleaning) {
        return false;
    }
    phase_ = phase;
    failure_.clear();
    return true;
}

void ToolDriver::present(ToolReview review, ToolPhase phase) {
    auto shown = std::make_shared<const ToolReview>(std::move(review));
    const std::lock_guard guard(lock_);
    review_ = std::move(shown);
    phase_ = phase;
}

ToolReview ToolDriver::makeReview(ScanResult result) const {
    ToolReview review;
    review.result = std::move(result);
    review.preselected = preselectedItems(review.result);
    review.ownReasons = ownReasons(review.result, services_);
    const Date now = Date::now();
    for (const ScanItem& item : review.result.items) {
        if (const auto skipped = services_.decisions().skipDate(item, now)) {
            review.skippedBefore.emplace(item.id, *skipped);
        }
    }
    judge(review);
    return review;
}

void ToolDriver::judge(ToolReview& review) const {
    const Refusal refusal(services_);
    review.refused.clear();
    for (const ScanItem& item : review.result.items) {
        if (auto sentence = refusal.sentence(item)) {
            review.refused.emplace(item.id, std::move(*sentence));
            review.preselected.erase(item.id);
        }
    }
}

bool ToolDriver::judgeAgain() {
    const auto shown = review();
    if (!shown || !begin(ToolPhase::results)) {
        return false;
    }
    ToolReview judged = *shown;
    judge(judged);
    present(std::move(judged), ToolPhase::results);
    return true;
}

bool ToolDriver::scan(const ModuleScanner& scanner, const ScanProgressHandler& progress) {
    if (!begin(ToolPhase::scanning)) {
        return false;
    }
    try {
        ScanResult result = progress ? scanner.scan(progress) : scanner.scan();
        const bool complete = !Task::isCancelled();
        ToolReview review = makeReview(std::move(result));
        if (complete) {
            // A part of a scan would make everything it did not reach look vanished.
            if (const auto previous = services_.scanCache().load(scannerID_)) {
                review.diff = ScanDiff::make(*previous, review.result);
            }
            services_.scanCache().save(review.result);
        }
        present(std::move(review), ToolPhase::results);
        return true;
    } catch (const std::exception& error) {
        const std::lock_guard guard(lock_);
        phase_ = ToolPhase::failed;
        failure_ = localizedDescription(error);
        return false;
    }
}

bool ToolDriver::loadPrevious() {
    auto previous = services_.scanCache().load(scannerID_);
    return previous && show(std::move(*previous));
}

bool ToolDriver::show(ScanResult result, std::optional<std::unordered_set<UUID>> preselected) {
    if (!begin(ToolPhase::results)) {
        return false;
    }
    ToolReview review = makeReview(std::move(result));
    if (preselected) {
        review.preselected = std::move(*preselected);
        for (const auto& [id, sentence] : review.refused) {
            review.preselected.erase(id);
        }
    }
    present(std::move(review), ToolPhase::results);
    return true;
}

std::vector<ScanItem> ToolDriver::items(const std::unordered_set<UUID>& ids) const {
    std::vector<ScanItem> found;
    if (const auto shown = review()) {
        for (const ScanItem& item : shown->result.items) {
            if (ids.contains(item.id)) {
                found.push_back(item);
            }
        }
    }
    return found;
}

std::optional<CleanupResult> ToolDriver::clean(const std::unordered_set<UUID>& selected,
                                               DeletionMode mode,
                                               const CleanupProgressHandler& progress) {
    const auto shown = review();
    if (!shown || !begin(ToolPhase::cleaning)) {
        return std::nullopt;
    }
    CleanupOperation operation;
    operation.scannerID = shown->result.scannerID;
    operation.approvedAt = Date::now();
    operation.items = items(selected);
    CleanupResult result = runCleanup(std::move(operation), mode, services_, progress);
    remember(*shown, selected, result);

    const std::lock_guard guard(lock_);
    outcome_ = result;
    phase_ = ToolPhase::finished;
    return result;
}

void ToolDriver::remember(const ToolReview& review, const std::unordered_set<UUID>& selected,
                          const CleanupResult& result) {
    std::vector<ScanItem> kept;
    for (const ScanItem& item : review.result.items) {
        // What may not be removed was no choice of the user's.
        if (!selected.contains(item.id) && !review.refused.contains(item.id)) {
            kept.push_back(item);
        }
    }
    std::vector<ScanItem> gone = result.succeeded;
    for (const CleanupSkip& skip : result.skipped) {
        gone.push_back(skip.item);
    }
    services_.decisions().recordSkips(kept, Date::now());
    services_.decisions().forget(gone);
}

} // namespace korvane
