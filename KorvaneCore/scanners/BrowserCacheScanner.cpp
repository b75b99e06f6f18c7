#include "KorvaneCore/scanners/BrowserCacheScanner.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/platform/DirectoryReader.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scanners/ItemCollection.h"

#include <array>
#include <span>
#include <utility>

#include <fcntl.h>

#include <fmt/format.h>

namespace korvane {

namespace {

/// How a browser lays out its profiles.
enum class BrowserKind { chromium, firefox, safari };

struct BrowserDef {
    std::string_view name;
    std::string_view rootPath; ///< below the home folder
    BrowserKind kind = BrowserKind::chromium;
    const PathHeuristic* heuristic = nullptr;
};

namespace rows = PathHeuristics;

constexpr std::array browsers{
    BrowserDef{"Safari", "Library/Caches/com.apple.Safari", BrowserKind::safari,
               &rows::browserSafariCache},
    BrowserDef{"Google Chrome", "Library/Application Support/Google/Chrome", BrowserKind::chromium,
               &rows::browserChromeCache},
    BrowserDef{"Firefox", "Library/Application Support/Firefox/Profiles", BrowserKind::firefox,
               &rows::browserFirefoxCache},
    BrowserDef{"Brave Browser", "Library/Application Support/BraveSoftware/Brave-Browser",
               BrowserKind::chromium, &rows::browserBraveCache},
    BrowserDef{"Arc", "Library/Application Support/Arc/User Data", BrowserKind::chromium,
               &rows::browserArcCache},
    BrowserDef{"Microsoft Edge", "Library/Application Support/Microsoft Edge",
               BrowserKind::chromium, &rows::browserEdgeCache},
    BrowserDef{"Opera", "Library/Application Support/com.operasoftware.Opera",
               BrowserKind::chromium, &rows::browserOperaCache},
    BrowserDef{"Vivaldi", "Library/Application Support/Vivaldi", BrowserKind::chromium,
               &rows::browserVivaldiCache}};

constexpr std::array<std::string_view, 4> chromiumCacheFolders{"Cache", "Code Cache", "GPUCache",
                                                               "Service Worker"};
constexpr std::array<std::string_view, 2> firefoxCacheFolders{"cache2", "startupCache"};

bool isFolder(const FileURL& url) {
    FileFacts facts;
    return readFactsFollowingLinks(AT_FDCWD, url.path().c_str(), facts) == 0 &&
           facts.kind == DirectoryReader::Kind::folder;
}

/// Collects the cache folders of one browser as items, not yet measured, in the order of profiles
/// and folders.
class CacheFolderFinder {
  public:
    CacheFolderFinder(const BrowserDef& browser, const FileURL& home)
        : browser_(browser), root_(home.appending(browser.rootPath)) {}

    std::vector<ScanItem> find() {
        const std::string category = fmt::format("Browser · {}", browser_.name);
        switch (browser_.kind) {
        case BrowserKind::safari:
            if (isFolder(root_)) {
                add(root_, category);
            }
            break;
        case BrowserKind::chromium:
            for (const std::string& profile : profileNames()) {
                const bool isDefault = profile == "Default";
                if (isDefault || profile.starts_with("Profile ")) {
                    addAll(profile, chromiumCacheFolders,
                           isDefault ? category
                                     : fmt::format("{} - {}", category, displayText(profile)));
                }
            }
            break;
        case BrowserKind::firefox:
            for (const std::string& profile : profileNames()) {
                addAll(profile, firefoxCacheFolders, category);
            }
            break;
        }
        return std::move(items_);
    }

  private:
    /// The folders directly in the root, hidden ones left out; none when it cannot be listed.
    [[nodiscard]] std::vector<std::string> profileNames() const {
        std::vector<std::string> names =
            namesInFolder(root_.path()).value_or(std::vector<std::string>());
        std::erase_if(names, [&](const std::string& name) {
            return name.starts_with('.') || !isFolder(root_.appending(name));
        });
        return names;
    }

    void addAll(const std::string& profile, std::span<const std::string_view> folders,
                const std::string& category) {
        const FileURL profileFolder = root_.appending(profile);
        for (const std::string_view folder : folders) {
            add(profileFolder.appending(folder), category);
        }
    }

    void add(FileURL url, const std::string& category) {
        if (auto item = itemAt(std::move(url), *browser_.heuristic, category)) {
            item->isDirectory = true;
            items_.push_back(std::move(*item));
        }
    }

    const BrowserDef& browser_;
    FileURL root_;
    std::vector<ScanItem> items_;
};

} // namespace

BrowserCacheScanner::BrowserCacheScanner(FileURL home, std::string id, std::string displayName)
    : NamedScanner(std::move(id), std::move(displayName)), home_(std::move(home)) {}

ScanResult BrowserCacheScanner::scan(const ScanProgressHandler& progress) const {
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    for (std::size_t i = 0; i < browsers.size() && !Task::isCancelled(); ++i) {
        progress({fmt::format("Checking {}…", browsers[i].name), static_cast<double>(i) * 0.125});
        collectMeasured(CacheFolderFinder(browsers[i], home_).find(), result.items);
    }
    sortLargestFirst(result.items);
    return finished(std::move(result), progress);
}

} // namespace korvane
