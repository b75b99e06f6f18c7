#include "Korvane/tools/DiskUsageBrowser.h"

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/scanners/DiskUsageScanner.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

namespace korvane {

namespace {

// How soon a cancelled task that waits for another's listing notices.
constexpr std::chrono::milliseconds cancellationInterval(50);

bool isInside(const FileURL& url, const FileURL& folder) {
    const std::string& path = folder.path();
    return url == folder || url.path().starts_with(path.ends_with('/') ? path : path + '/');
}

} // namespace

DiskUsageBrowser::DiskUsageBrowser()
    : DiskUsageBrowser([](const FileURL& folder, const KnownSize& knownSize) {
          return DiskUsageScanner().children(folder, {.knownSize = knownSize});
      }) {}

DiskUsageBrowser::DiskUsageBrowser(List list) : list_(std::move(list)) {}

DiskUsageBrowser::View DiskUsageBrowser::view() const {
    const std::lock_guard held(lock_);
    return view_;
}

std::optional<std::int64_t> DiskUsageBrowser::size(const FileURL& folder) const {
    const std::lock_guard held(lock_);
    const auto found = sizes_.find(folder);
    return found == sizes_.end() ? std::nullopt : std::optional(found->second);
}

void DiskUsageBrowser::open(const FileURL& root) {
    std::unique_lock held(lock_);
    show({root}, held);
}

void DiskUsageBrowser::enter(const FileURL& child) {
    std::unique_lock held(lock_);
    const bool isOnShow =
        view_.children &&
        std::any_of(view_.children->begin(), view_.children->end(),
                    [&](const auto& node) { return node.isDirectory && node.url == child; });
    if (isOnShow) {
        std::vector<FileURL> crumbs = view_.crumbs;
        crumbs.push_back(child);
        show(std::move(crumbs), held);
    }
}

void DiskUsageBrowser::goTo(std::size_t crumb) {
    std::unique_lock held(lock_);
    if (crumb < view_.crumbs.size()) {
        show({view_.crumbs.begin(), view_.crumbs.begin() + static_cast<std::ptrdiff_t>(crumb) + 1},
             held);
    }
}

void DiskUsageBrowser::refresh() {
    std::unique_lock held(lock_);
    if (!view_.crumbs.empty()) {
        forget(view_.crumbs.back());
        show(view_.crumbs, held);
    }
}

// What changed inside a folder changed what the folders around it take, too.
void DiskUsageBrowser::forget(const FileURL& folder) {
    const auto isTouched = [&](const auto& known) {
        return isInside(known.first, folder) || isInside(folder, known.first);
    };
    std::erase_if(listings_, isTouched);
    std::erase_if(sizes_, isTouched);
}

void DiskUsageBrowser::show(std::vector<FileURL> crumbs, std::unique_lock<std::mutex>& held) {
    const FileURL folder = crumbs.back();
    const std::uint64_t navigation = ++navigation_;
    view_ = {std::move(crumbs), nullptr, true, ""};
    Shared children;
    std::string failure;
    try {
        children = listing(folder, held);
    } catch (const std::exception& error) {
        failure = localizedDescription(error);
    }
    if (navigation == navigation_) {
        view_.children = std::move(children);
        view_.isLoading = false;
        view_.failure = std::move(failure);
    }
}

// The listing of a folder, from before, from a thread that is at it, or made now. Null when the
// surrounding task was cancelled: sizes cut short are nothing to show or keep.
DiskUsageBrowser::Shared DiskUsageBrowser::listing(const FileURL& folder,
                                                   std::unique_lock<std::mutex>& held) {
    while (underWay_.contains(folder) && !Task::isCancelled()) {
        listed_.wait_for(held, cancellationInterval);
    }
    if (const auto found = listings_.find(folder); found != listings_.end()) {
        return found->second;
    }
    if (Task::isCancelled()) {
        return nullptr;
    }
    underWay_.insert(folder);
    held.unlock();
    Shared made;
    std::exception_ptr failure;
    try {
        made = std::make_shared<const Listing>(
            list_(folder, [this](const FileURL& url) { return size(url); }));
    } catch (...) {
        failure = std::current_exception();
    }
    const bool isWhole = made && !Task::isCancelled();
    held.lock();
    underWay_.erase(folder);
    listed_.notify_all();
    if (failure) {
        std::rethrow_exception(failure);
    }
    if (!isWhole) {
        return nullptr;
    }
    for (const DiskUsageNode& node : *made) {
        if (node.isDirectory) {
            sizes_[node.url] = node.sizeBytes;
        }
    }
    return listings_[folder] = std::move(made);
}

} // namespace korvane
