#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/UserFolders.h"
#include "KorvaneCore/scanners/DifferenceHash.h"
#include "KorvaneCore/scanners/SimilarHashes.h"
#include "KorvaneCore/scanners/SimilarImagesScanner.h"
#include "tests/support/PictureMaker.h"
#include "tests/support/TemporaryFolder.h"

#include <array>
#include <bit>
#include <cstdlib>
#include <set>

#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::Picture;
using testing::TemporaryFolder;
using Groups = std::vector<std::vector<std::size_t>>;

/// "path below the folder | kept path below the folder" of each item, in the result's order.
std::vector<std::string> lines(const ScanResult& result, const TemporaryFolder& folder) {
    std::vector<std::string> texts;
    for (const ScanItem& item : result.items) {
        const std::size_t length = folder.path().size() + 1;
        texts.push_back(item.path().substr(length) + " | " + item.category.substr(length));
    }
    return texts;
}

std::vector<std::string> scanned(const TemporaryFolder& folder, int threshold = 8) {
    return lines(SimilarImagesScanner(folder.url(), threshold).scan(), folder);
}

Groups groupedOneByOne(const std::vector<std::uint64_t>& hashes, int threshold) {
    Groups groups;
    for (std::size_t i = 0; i < hashes.size(); ++i) {
        bool isPlaced = false;
        for (auto& group : groups) {
            if (!isPlaced && std::popcount(hashes[group[0]] ^ hashes[i]) <= threshold) {
                group.push_back(i);
                isPlaced = true;
            }
        }
        if (!isPlaced) {
            groups.push_back({i});
        }
    }
    return groups;
}

TEST(DifferenceHash, setsABitWhereAPixelOutshinesItsRightNeighbour) {
    rc::check("every bit", [](const std::array<std::uint8_t, 72>& grey) {
        const std::uint64_t hash = differenceHash(grey);
        for (std::size_t bit = 0; bit < 64; ++bit) {
            const std::size_t pixel = bit / 8 * 9 + bit % 8;
            RC_ASSERT((hash >> bit & 1U) == (grey[pixel] > grey[pixel + 1] ? 1U : 0U));
        }
    });
}

TEST(DifferenceHash, readsThePictureFromTheTopLeftOnWhite) {
    // The left column of the first row, and the lower right corner, are dark on nothing.
    Thumbnail picture{hashedSize, std::vector<std::uint8_t>(hashedSize.count() * 4, 0)};
    EXPECT_EQ(differenceHash(picture), 0U);
    picture.rgba[1 * 4 + 3] = 255;
    picture.rgba[71 * 4 + 3] = 200;
    EXPECT_EQ(differenceHash(picture), 1U | std::uint64_t{1} << 63U);
    for (const int shade : {0, 1, 127, 254, 255}) {
        const Thumbnail flat{
            {64, 47},
            std::vector<std::uint8_t>(std::size_t{64} * 47 * 4, static_cast<std::uint8_t>(shade))};
        EXPECT_EQ(differenceHash(flat), 0U) << shade;
    }
}

TEST(SimilarHashes, comparesWithTheFirstMemberOnly) {
    const std::vector<std::uint64_t> hashes{0x00, 0x0F, 0xFF, 0x1F, 0xFE, 0x00};
    EXPECT_EQ(groupSimilarHashes(hashes, 4), (Groups{{0, 1, 5}, {2, 3, 4}}));
    EXPECT_EQ(groupSimilarHashes(hashes, 0), (Groups{{0, 5}, {1}, {2}, {3}, {4}}));
    EXPECT_EQ(groupSimilarHashes(hashes, 64).size(), 1U);
    EXPECT_EQ(groupSimilarHashes(hashes, -1).size(), 6U);
}

TEST(SimilarHashes, groupsAsThePlainRuleDoes) {
    rc::check("groups", [] {
        const auto close = rc::gen::map(rc::gen::inRange<std::uint64_t>(0, 4096),
                                        [](std::uint64_t bits) { return bits * 0x1'0010'0001U; });
        const auto hashes = *rc::gen::container<std::vector<std::uint64_t>>(
            rc::gen::oneOf(close, rc::gen::arbitrary<std::uint64_t>()));
        const int threshold = *rc::gen::inRange(0, 40);
        RC_ASSERT(groupSimilarHashes(hashes, threshold) == groupedOneByOne(hashes, threshold));
    });
}

TEST(SimilarImagesScanner, groupsOnePictureInEveryFormat) {
    const TemporaryFolder folder;
    const Picture picture = Picture::ofShapes(1);
    std::set<std::string> expected;
    for (const char* kind :
         {".jpg", ".jpeg", ".png", ".heic", ".heif", ".tiff", ".tif", ".gif", ".webp", ".avif"}) {
        const std::string name = "sub/picture" + std::string(kind);
        folder.makeFile(name, picture.file(kind));
        expected.insert(name + " | picture.BMP");
    }
    folder.makeFile("picture.BMP", picture.file(".bmp") + std::string(1000, '\0'));
    folder.makeFile("picture.xx.BmP", Picture::ofShapes(7).file(".bmp"));
    folder.setModified("sub/picture.gif", 1'700'000'000.25);
    const ScanResult result = SimilarImagesScanner(folder.url(), 8).scan();
    const auto found = lines(result, folder);
    EXPECT_EQ(std::set<std::string>(found.begin(), found.end()), expected);
    EXPECT_EQ(result.scannerID, "similar-images");
    std::int64_t size = 320 * 240 * 3 + 54 + 1000;
    for (const ScanItem& item : result.items) {
        EXPECT_LE(item.sizeBytes, size);
        size = item.sizeBytes;
        EXPECT_EQ(static_cast<std::size_t>(size),
                  folder.content(item.path().substr(folder.path().size() + 1)).size());
        EXPECT_EQ(item.heuristicID, "similar-images.near-duplicate");
        EXPECT_FALSE(item.isDirectory);
        EXPECT_EQ(item.lastModified == Date::fromUnixSeconds(1'700'000'000).adding(0.25),
                  item.url.pathExtension() == "gif");
    }
}

TEST(SimilarImagesScanner, keepsTheLargestOfCopiesThatWereSavedAnew) {
    const TemporaryFolder folder;
    for (unsigned seed = 1; seed < 9; ++seed) {
        const std::string name = "p" + std::to_string(seed);
        folder.makeFile(name + "-a.jpg", Picture::ofShapes(seed, 160, 120).file(".jpg[Q=70]"));
        folder.makeFile(name + "-b.jpg", Picture::ofShapes(seed, 640, 480).file(".jpg[Q=90]"));
        folder.makeFile(name + "-c.jpg", Picture::ofShapes(seed, 640, 480).file(".jpg[Q=30]"));
        folder.makeFile(name + "-d.jpg",
                        Picture::ofShapes(seed, 320, 240).turnedLeft().file(".jpg[Q=95]", 6));
    }
    const auto found = scanned(folder);
    EXPECT_EQ(found.size(), 24U);
    for (const std::string& line : found) {
        EXPECT_EQ(line.substr(0, 2) + "-b.jpg", line.substr(line.size() - 8)) << line;
    }
}

TEST(SimilarImagesScanner, takesFlatPicturesForAlikeAndKeepsTheFirstOfEqualSizes) {
    const TemporaryFolder folder;
    folder.makeFile("b.bmp", Picture::ofShade(30).file(".bmp"));
    folder.makeFile("a/z.bmp", Picture::ofShade(250).file(".bmp"));
    folder.makeFile("c.bmp", Picture::ofShade(128).file(".bmp"));
    folder.makeFile("other.png", Picture::ofShapes(2).file(".png"));
    EXPECT_THAT(scanned(folder, 0), ElementsAre("b.bmp | a/z.bmp", "c.bmp | a/z.bmp"));
}

TEST(SimilarImagesScanner, passesOverWhatIsNoPictureOfThisFolder) {
    const TemporaryFolder folder;
    const TemporaryFolder elsewhere;
    const std::string picture = Picture::ofShade(9).file(".png");
    elsewhere.makeFile("x.png", picture);
    for (const char* name :
         {"one.png", ".hidden.png", ".hidden/x.png", "Some.app/x.png",
          "Pictures.PhotosLibrary/x.png", "x.svg", "x.psd", "png", "x.png~", ".png", "x.png."}) {
        folder.makeFile(name, picture);
    }
    folder.makeLink("link.png", elsewhere.at("x.png").path());
    folder.makeLink("folder", elsewhere.path());
    folder.makeFile("broken.jpg", picture.substr(0, picture.size() / 2));
    folder.makeFile("drawing.png", "<svg xmlns=\"http://www.w3.org/2000/svg\"/>");
    folder.makeFolder("folder.png");
    ASSERT_EQ(mkfifo(folder.at("pipe.jpg").path().c_str(), 0600), 0);
    EXPECT_THAT(scanned(folder), IsEmpty());
    folder.makeFile("two.jpg", picture);
    EXPECT_THAT(scanned(folder), ElementsAre("two.jpg | one.png"));
    folder.makeLink("way", folder.path());
    EXPECT_THAT(lines(SimilarImagesScanner(folder.at("way"), 8).scan(), folder),
                ElementsAre("way/two.jpg | way/one.png"));
    EXPECT_THAT(SimilarImagesScanner(folder.at("one.png"), 8).scan().items, IsEmpty());
    EXPECT_THAT(SimilarImagesScanner(folder.at("missing"), 8).scan().items, IsEmpty());
}

TEST(SimilarImagesScanner, reportsEveryTwentiethImage) {
    const TemporaryFolder folder;
    std::vector<ScanProgress> reports;
    const auto scan = [&] {
        reports.clear();
        (void)SimilarImagesScanner(folder.url(), 8).scan([&](const ScanProgress& report) {
            reports.push_back(report);
        });
    };
    scan();
    EXPECT_THAT(reports, ElementsAre(ScanProgress{"Finding image files…", 0.05}));
    for (int i = 10; i < 50; ++i) {
        folder.makeFile(std::to_string(i) + "\n\xFF.png", "no picture");
    }
    scan();
    EXPECT_THAT(reports,
                ElementsAre(ScanProgress{"Finding image files…", 0.05},
                            ScanProgress{"Hashing 10\\n\\xFF.png…", 0.05},
                            ScanProgress{"Hashing 30\\n\\xFF.png…", 0.05 + 0.7 * 20 / 40},
                            ScanProgress{"Grouping similar images…", 0.8},
                            ScanProgress{"Building results…", 0.95}, ScanProgress{"Done", 1.0}));
}

TEST(SimilarImagesScanner, groupsWhatItHadHashedWhenCancelled) {
    const TemporaryFolder folder;
    for (int i = 10; i < 50; ++i) {
        folder.makeFile(std::to_string(i) + ".png", Picture::ofShade(1).file(".png"));
    }
    std::vector<std::string> messages;
    const auto cancellation = Task::makeCancellation();
    const Task::Scope scope(cancellation);
    const ScanResult result =
        SimilarImagesScanner(folder.url(), 8).scan([&](const ScanProgress& report) {
            messages.push_back(report.message);
            if (report.message == "Hashing 30.png…") {
                Task::cancel(*cancellation);
            }
        });
    EXPECT_EQ(messages.back(), "Building results…");
    EXPECT_GE(result.items.size(), 19U);
    EXPECT_LE(result.items.size(), 20U);
}

TEST(SimilarImagesScanner, showsTheKeptPathFromTheHomeFolder) {
    // NOLINTBEGIN(concurrency-mt-unsafe): no other thread runs here
    class Home {
      public:
        explicit Home(const std::string& path) { setenv("HOME", path.c_str(), 1); }
        ~Home() { setenv("HOME", previous_.c_str(), 1); }
        // NOLINTEND(concurrency-mt-unsafe)
        Home(const Home&) = delete;
        Home& operator=(const Home&) = delete;

      private:
        std::string previous_ = UserFolders::current().home.path();
    };
    const TemporaryFolder folder;
    const std::string picture = Picture::ofShade(1).file(".png");
    for (const char* name : {"ann/x/1.png", "ann/x/2.png", "anna/1.png", "\xFF\n/1.png"}) {
        folder.makeFile(name, picture);
    }
    const Home home(folder.at("ann").path());
    const auto category = [&](const char* name) {
        const ScanResult result = SimilarImagesScanner(folder.at(name), 8).scan();
        // What a stored result needs: text that is valid, and the exact place.
        const ScanResult stored = ScanResult::fromJson(parseJson(result.encode(DateForm::iso8601)));
        return stored.items.empty() ? "none" : stored.items.front().category;
    };
    EXPECT_EQ(category("ann"), "~/x/1.png");
    folder.makeFile("anna/2.png", picture);
    EXPECT_EQ(category("anna"), "~a/1.png");
    folder.makeFile("\xFF\n/2.png", picture);
    EXPECT_EQ(category("\xFF\n"), folder.path() + "/\\xFF\\n/1.png");
}

} // namespace
} // namespace korvane
