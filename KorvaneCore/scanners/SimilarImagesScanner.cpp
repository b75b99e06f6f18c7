#include "KorvaneCore/scanners/SimilarImagesScanner.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/platform/UserFolders.h"
#include "KorvaneCore/scan/FileSystemWalker.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scanners/ChosenFolder.h"
#include "KorvaneCore/scanners/DifferenceHash.h"
#include "KorvaneCore/scanners/FileKind.h"
#include "KorvaneCore/scanners/ItemCollection.h"
#include "KorvaneCore/scanners/SimilarHashes.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <utility>

#include <fcntl.h>

#include <fmt/format.h>

namespace korvane {

namespace {

constexpr std::size_t imagesPerReport = 20;

constexpr std::array<std::string_view, 11> imageExtensions{
    "jpg", "jpeg", "png", "heic", "heif", "tiff", "tif", "gif", "bmp", "webp", "avif"};

bool isImage(const FileURL& url) {
    const std::string extension = composedLowercase(url.pathExtension());
    return std::find(imageExtensions.begin(), imageExtensions.end(), extension) !=
           imageExtensions.end();
}

bool readRegularFile(const FileURL& url, FileFacts& facts) {
    const ReachablePath place(url.path());
    return place.error() == 0 && readFacts(place.parent(), place.name(), facts) == 0 &&
           facts.kind == DirectoryReader::Kind::file;
}

std::vector<FileURL> findImages(const FileURL& root) {
    const ChosenFolder folder(root);
    std::vector<FileURL> images;
    FileSystemWalker().walk(folder.real(), nullptr, [&](const WalkEntry& entry) {
        if (entry.isDirectory) {
            return entry.depth > 0 && isPackageExtension(entry.url.pathExtension())
                       ? WalkDecision::skipDescendants
                       : WalkDecision::proceed;
        }
        FileFacts facts;
        if (!entry.isSymlink && isImage(entry.url) && readRegularFile(entry.url, facts)) {
            images.push_back(folder.shown(entry.url));
        }
        return WalkDecision::proceed;
    });
    return images;
}

struct HashedImage {
    FileURL url;
    std::uint64_t hash = 0;
    std::int64_t size = 0;
    std::optional<Date> modified;
};

std::vector<HashedImage> hashImages(std::vector<FileURL> images,
                                    const ScanProgressHandler& progress) {
    const ImageDecoder& decoder = ImageDecoder::shared();
    std::vector<HashedImage> hashed;
    for (std::size_t i = 0; i < images.size() && !Task::isCancelled(); ++i) {
        FileURL& url = images[i];
        if (i % imagesPerReport == 0) {
            progress({fmt::format("Hashing {}…", displayText(url.lastPathComponent())),
                      0.05 + 0.7 * static_cast<double>(i) / static_cast<double>(images.size())});
        }
        const auto hash = differenceHash(url, decoder);
        FileFacts facts;
        if (hash && readRegularFile(url, facts)) {
            hashed.push_back(
                {std::move(url), *hash, facts.sizeBytes, Date::fromTimespec(facts.modified)});
        }
    }
    return hashed;
}

/// The path with "~" in place of the home folder's, which is tested letter by letter: a neighbour
/// whose name begins alike is shortened too.
std::string displayPath(const FileURL& url, const FileURL& home) {
    const std::string_view path = url.path();
    return displayText(!home.path().empty() && path.starts_with(home.path())
                           ? fmt::format("~{}", path.substr(home.path().size()))
                           : std::string(path));
}

/// The members of one group apart from the one that is kept.
void addItems(std::vector<ScanItem>& items, std::vector<std::size_t>& group,
              const std::vector<HashedImage>& images, const FileURL& home) {
    std::stable_sort(group.begin(), group.end(),
                     [&](std::size_t a, std::size_t b) { return images[a].size > images[b].size; });
    const std::string category = displayPath(images[group.front()].url, home);
    for (const std::size_t member : std::span(group).subspan(1)) {
        const HashedImage& image = images[member];
        items.push_back(
            {.url = image.url,
             .sizeBytes = image.size,
             .lastModified = image.modified,
             .category = category,
             .heuristicID = std::string(PathHeuristics::similarImagesNearDuplicate.id)});
    }
}

} // namespace

SimilarImagesScanner::SimilarImagesScanner(FileURL rootURL, int hammingThreshold)
    : NamedScanner("similar-images", "Similar Images"), rootURL_(std::move(rootURL)),
      hammingThreshold_(hammingThreshold) {}

ScanResult SimilarImagesScanner::scan(const ScanProgressHandler& progress) const {
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    progress({"Finding image files…", 0.05});
    std::vector<FileURL> found = findImages(rootURL_);
    if (!found.empty()) {
        const std::vector<HashedImage> images = hashImages(std::move(found), progress);
        progress({"Grouping similar images…", 0.8});
        std::vector<std::uint64_t> hashes(images.size());
        std::transform(images.begin(), images.end(), hashes.begin(),
                       [](const HashedImage& image) { return image.hash; });
        auto groups = groupSimilarHashes(hashes, hammingThreshold_);
        progress({"Building results…", 0.95});
        const FileURL home = UserFolders::current().home;
        for (std::vector<std::size_t>& group : groups) {
            addItems(result.items, group, images, home);
        }
        if (!Task::isCancelled()) {
            progress({"Done", 1.0});
        }
    }
    result.finishedAt = Date::now();
    return result;
}

} // namespace korvane
