#pragma once

#include "Korvane/tools/Confirmation.h"
#include "KorvaneCore/cleaning/CleanupResult.h"
#include "KorvaneCore/memory/ScanDiff.h"
#include "KorvaneCore/scan/ModuleScanner.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace korvane {

class Services;

/// Where a tool is in its work.
enum class ToolPhase { idle, scanning, results, cleaning, finished, failed };

/// A result as it is laid before the user: what is new, what was passed over before, what may not
/// be removed, what starts ticked. Never changes once made.
struct ToolReview {
    ScanResult result;
    std::optional<ScanDiff> diff;                  ///< against the scan before, when there was one
    std::unordered_set<UUID> preselected;          ///< item ids
    std::unordered_map<UUID, Date> skippedBefore;  ///< item id to the day it was kept
    std::unordered_map<UUID, std::string> refused; ///< item id to the sentence why it must stay
    /// Row id to the reason for rows that are the user's own rules; the catalogue has the others.
    std::unordered_map<std::string, std::string> ownReasons;
};

/// Drives one tool through scanning, review and cleaning: the rules that the command and the window
/// share. `scan` and `clean` do their work on the caller's thread, which is usually a Task; the
/// rest may be asked from any thread meanwhile.
class ToolDriver {
  public:
    /// `services` must outlive the driver.
    ToolDriver(std::string scannerID, Services& services);

    [[nodiscard]] const std::string& scannerID() const noexcept { return scannerID_; }
    [[nodiscard]] ToolPhase phase() const;
    /// Why the phase is `failed`.
    [[nodiscard]] std::string failure() const;
    /// What is on show; null before the first result.
    [[nodiscard]] std::shared_ptr<const ToolReview> review() const;
    /// The outcome of the last cleanup of this driver; nothing before.
    [[nodiscard]] std::optional<CleanupResult> outcome() const;

    /// Runs the scanner, compares with the last result and keeps the new one. A cancelled scan
    /// shows what it had gathered and is not kept. False when the driver is busy or the scanner
    /// failed.
    bool scan(const ModuleScanner& scanner, const ScanProgressHandler& progress = {});

    /// Shows the last result of this tool at once, without scanning. False when there is none or
    /// the driver is busy.
    bool loadPrevious();

    /// Shows a result that came from elsewhere. `preselected` replaces the risk rule where given.
    bool show(ScanResult result, std::optional<std::unordered_set<UUID>> preselected = {});

    /// Judges what is on show again, as after a change of the protected paths: what may not be
    /// removed any more is refused, the rest stays as it is. False when there is nothing on show or
    /// the driver is busy.
    bool judgeAgain();

    /// The items of the review with these ids, in its order.
    [[nodiscard]] std::vector<ScanItem> items(const std::unordered_set<UUID>& ids) const;

    /// Removes exactly the items with these ids, which the user has seen and confirmed; remembers
    /// what was kept and forgets what is gone. Nothing when there is nothing on show or the driver
    /// is busy.
    std::optional<CleanupResult> clean(const std::unordered_set<UUID>& selected, DeletionMode mode,
                                       const CleanupProgressHandler& progress = {});

  private:
    [[nodiscard]] bool begin(ToolPhase phase);
    void present(ToolReview review, ToolPhase phase);
    [[nodiscard]] ToolReview makeReview(ScanResult result) const;
    void judge(ToolReview& review) const;
    void remember(const ToolReview& review, const std::unordered_set<UUID>& selected,
                  const CleanupResult& result);

    std::string scannerID_;
    Services& services_;
    mutable std::mutex lock_;
    ToolPhase phase_ = ToolPhase::idle;
    std::string failure_;
    std::shared_ptr<const ToolReview> review_;
    std::optional<CleanupResult> outcome_;
};

} // namespace korvane
