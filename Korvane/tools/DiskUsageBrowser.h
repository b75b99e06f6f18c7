#pragma once

#include "KorvaneCore/scanners/DiskUsageNode.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace korvane {

/// Going through folders by what they take on the disk: where the user is, how they came there, and
/// what was listed and measured so far, so that nothing is measured twice. The navigation
/// operations list on the caller's thread, which is usually a Task; everything may be called from
/// any thread, also while a listing is under way. When the user has moved elsewhere before a
/// listing ends, it is kept for later and not shown.
class DiskUsageBrowser {
  public:
    using Listing = std::vector<DiskUsageNode>;
    using KnownSize = std::function<std::optional<std::int64_t>(const FileURL&)>;
    /// Lists a folder; may throw, what() of the exception is then shown. Cancelled by the
    /// surrounding task.
    using List = std::function<Listing(const FileURL& folder, const KnownSize& knownSize)>;

    /// What is on show.
    struct View {
        std::vector<FileURL> crumbs;             ///< from the root to the folder shown
        std::shared_ptr<const Listing> children; ///< null while loading and after a failure
        bool isLoading = false;
        std::string failure; ///< why there is no listing; fit for a user
    };

    /// With the real scanner.
    DiskUsageBrowser();
    explicit DiskUsageBrowser(List list);

    [[nodiscard]] View view() const;

    /// Begins anew at a folder.
    void open(const FileURL& root);
    /// Goes into a folder of the listing on show; anything else is ignored.
    void enter(const FileURL& child);
    /// Goes back to a crumb; an index beyond them is ignored.
    void goTo(std::size_t crumb);
    /// Measures the folder on show and everything inside anew.
    void refresh();

    /// What a folder was measured to take; nothing when it was not.
    [[nodiscard]] std::optional<std::int64_t> size(const FileURL& folder) const;

  private:
    using Shared = std::shared_ptr<const Listing>;

    void show(std::vector<FileURL> crumbs, std::unique_lock<std::mutex>& held);
    void forget(const FileURL& folder);
    [[nodiscard]] Shared listing(const FileURL& folder, std::unique_lock<std::mutex>& held);

    List list_;
    mutable std::mutex lock_;
    std::condition_variable listed_;
    View view_;
    std::uint64_t navigation_ = 0; ///< counts the moves: a listing of an earlier one is stale
    std::unordered_map<FileURL, Shared> listings_;
    std::unordered_map<FileURL, std::int64_t> sizes_;
    std::unordered_set<FileURL> underWay_; ///< being listed by some thread
};

} // namespace korvane
