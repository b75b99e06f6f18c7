#include "KorvaneCore/platform/BinFolders.h"
#include "KorvaneCore/scanners/DownloadsScanner.h"
#include "KorvaneCore/scanners/ICloudCleanupScanner.h"
#include "KorvaneCore/scanners/LargeFileScanner.h"
#include "KorvaneCore/scanners/OldFilesScanner.h"
#include "KorvaneCore/scanners/TimeMachineScanner.h"
#include "KorvaneCore/scanners/TrashScanner.h"
#include "tests/support/FakeProcessLauncher.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>

#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using testing::FakeProcessLauncher;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class LocationScannersTest : public ::testing::Test {
  protected:
    UserFolders folders() const {
        return {home.url(), home.at("data"), home.at(".config"), home.at("tmp")};
    }

    /// A file of some bytes that was last changed so many days ago.
    void makeOld(const std::string& name, double days, std::size_t bytes = 10) const {
        home.makeFileOfSize(name, bytes);
        home.setModified(name, static_cast<double>(Date::now().unixSeconds()) - days * 86400);
    }

    std::vector<std::string> found(const ModuleScanner& scanner) const {
        std::vector<std::string> lines;
        for (const ScanItem& item : scanner.scan().items) {
            lines.push_back(item.path().substr(home.path().size() + 1) + " | " + item.category);
        }
        return lines;
    }

    testing::TemporaryFolder home;
};

TEST_F(LocationScannersTest, findsOldFilesByTheRuleOfTheirFolder) {
    makeOld("Downloads/old.dmg", 91, 500);
    makeOld("Downloads/young.dmg", 89);
    makeOld("Downloads/.hidden", 400);
    makeOld("Downloads/folder/inside", 400);
    makeOld("Desktop/Screenshot 1.png", 31, 400);
    makeOld("Desktop/Screenshot 2.png", 29);
    makeOld("Desktop/Screenshot notes.txt", 400);
    makeOld("Desktop/Thesis.png", 400);
    makeOld("Desktop/Screencast from yesterday.webm", 400);
    makeOld("Pictures/Screenshots/Screen Shot.PNG", 31, 300);
    makeOld("Videos/Screencasts/Screencast from 1.webm", 31, 200);
    const std::string archives = "Library/Developer/Xcode/Archives/2020-01-01/";
    for (const char* name : {"Old.xcarchive", "Young.xcarchive"}) {
        makeOld(archives + name + "/Info.plist", name[0] == 'O' ? 91 : 1, 100);
        makeOld(archives + name + "/x", 91, 1);
        home.setModified(archives + name, 1e9);
    }
    EXPECT_THAT(found(OldFilesScanner(defaultOldFilesTargets(folders()))),
                ElementsAre(archives + "Old.xcarchive | Old · Xcode Archives", // whole blocks
                            "Downloads/old.dmg | Old · Downloads",
                            "Desktop/Screenshot 1.png | Old · Screenshots",
                            "Pictures/Screenshots/Screen Shot.PNG | Old · Screenshots",
                            "Videos/Screencasts/Screencast from 1.webm | Old · Screenshots"));
}

TEST_F(LocationScannersTest, looksWhereTheUserMovedTheUsualFolders) {
    home.makeFile(".config/user-dirs.dirs", "# a comment\n"
                                            "XDG_DESKTOP_DIR=\"$HOME/Schreib \\\"tisch\"\n"
                                            "XDG_DOWNLOAD_DIR=\"$HOME/\"\n"
                                            "XDG_PICTURES_DIR=\"/somewhere/else\"\n"
                                            "XDG_VIDEOS_DIR=\"" +
                                                home.path() + "/Filme\"\n");
    const UserDirectories places = UserDirectories::read(folders());
    EXPECT_EQ(places.desktop, home.at("Schreib \"tisch"));
    EXPECT_EQ(places.downloads, home.at("Downloads")); // never the home folder itself
    EXPECT_EQ(places.pictures, home.at("Pictures"));   // nor a place outside
    EXPECT_EQ(places.videos, home.at("Filme"));
    makeOld("Schreib \"tisch/Screenshot.png", 31);
    makeOld("Desktop/Screenshot.png", 31);
    EXPECT_THAT(found(OldFilesScanner(defaultOldFilesTargets(folders()))),
                UnorderedElementsAre("Schreib \"tisch/Screenshot.png | Old · Screenshots",
                                     "Desktop/Screenshot.png | Old · Screenshots"));
}

TEST_F(LocationScannersTest, listsTheLargestFilesAndTheDownloads) {
    home.makeFileOfSize("Downloads/a.ISO", 900);
    home.makeFileOfSize("Downloads/sub/b.tar.gz", 900);
    home.makeFileOfSize("Downloads/c", 300);
    home.makeFileOfSize("Downloads/d.mp3", 0);
    home.makeFileOfSize("Downloads/.e.zip", 900);
    home.makeFileOfSize("Downloads/Tool.app/Contents/big", 9000);
    home.makeLink("Downloads/link.zip", home.at("Downloads/a.ISO").path());
    EXPECT_THAT(found(DownloadsScanner(home.at("Downloads"))),
                ElementsAre("Downloads/a.ISO | Disk images", "Downloads/sub/b.tar.gz | Archives",
                            "Downloads/c | Other"));
    EXPECT_THAT(found(LargeFileScanner(home.url(), 300, 3)),
                ElementsAre("Downloads/Tool.app/Contents/big | Large File Browser",
                            "Downloads/a.ISO | Large File Browser",
                            "Downloads/sub/b.tar.gz | Large File Browser"));
    // A folder that was moved elsewhere is shown where its user knows it.
    home.makeLink("moved", home.at("Downloads/sub").path());
    EXPECT_THAT(found(LargeFileScanner(home.at("moved"), 0, 9)),
                ElementsAre("moved/b.tar.gz | Large File Browser"));
    EXPECT_THAT(found(DownloadsScanner(home.at("moved"))),
                ElementsAre("moved/b.tar.gz | Archives"));
}

TEST_F(LocationScannersTest, measuresTheBinsOfThisUserOnly) {
    home.makeFileOfSize("data/Trash/files/big", 300000);
    home.makeFileOfSize("data/Trash/info/big.trashinfo", 10);
    home.makeFolder(".Trash");
    const TrashScanner scanner(folders());
    const ScanResult result = scanner.scan();
    const auto own = std::count_if(result.items.begin(), result.items.end(), [&](const auto& item) {
        return item.path().starts_with(home.path());
    });
    EXPECT_EQ(own, 1) << "an empty Bin has nothing to free";
    for (const ScanItem& item : result.items) {
        if (item.url == home.at("data/Trash/files")) {
            EXPECT_EQ(item.heuristicID, "system.trash-all-volumes");
            EXPECT_GE(item.sizeBytes, 300000);
            EXPECT_LT(item.sizeBytes, 310000);
        }
    }
    FakeProcessLauncher failing([](const ProcessRequest&) { return ProcessOutcome(); });
    EXPECT_EQ(binContentSize(home.at("data/Trash/files"), failing), 0);

    const auto bins = [&] {
        std::vector<FileURL> here = binFolders(folders());
        std::erase_if(here,
                      [&](const FileURL& bin) { return !bin.path().starts_with(home.path()); });
        return here;
    };
    EXPECT_THAT(bins(), ElementsAre(home.at("data/Trash/files"), home.at(".Trash")));
    // Neither another user's folder nor what a link leads to is this user's Bin.
    if (geteuid() == 0) {
        ASSERT_EQ(chown(home.at(".Trash").path().c_str(), 65534, 65534), 0);
        EXPECT_THAT(bins(), ElementsAre(home.at("data/Trash/files")));
    }
    home.makeFolder("elsewhere");
    std::filesystem::remove_all(home.at("data/Trash/files").path());
    home.makeLink("data/Trash/files", home.at("elsewhere").path());
    std::filesystem::remove(home.at(".Trash").path());
    EXPECT_THAT(bins(), IsEmpty());
}

TEST_F(LocationScannersTest, listsSnapshotsWhereThereIsATool) {
    FakeProcessLauncher tool([](const ProcessRequest&) {
        return FakeProcessLauncher::saying("Snapshots for disk /:\n"
                                           "com.apple.TimeMachine.2026-11-14-185244.local\n"
                                           "com.apple.os.update-ABC\n"
                                           "com.apple.TimeMachine.odd\n"
                                           "com.apple.TimeMachine.../../etc\n");
    });
    const ScanResult result = TimeMachineScanner(tool).scan();
    ASSERT_EQ(result.items.size(), 2U);
    EXPECT_EQ(result.items[0].url.lastPathComponent(),
              "com.apple.TimeMachine.2026-11-14-185244.local");
    EXPECT_EQ(result.items[0].lastModified, Date::fromISO8601("2026-11-14T18:52:44Z"));
    EXPECT_EQ(result.items[1].lastModified, std::nullopt);
    EXPECT_THAT(tool.requests.at(0).arguments, ElementsAre("listlocalsnapshots", "/"));
    FakeProcessLauncher none([](const ProcessRequest&) { return ProcessOutcome(); });
    EXPECT_THAT(TimeMachineScanner(none).scan().items, IsEmpty());
}

TEST_F(LocationScannersTest, listsCloudFilesThatTakeSpaceHere) {
    const std::string cloud = "Library/Mobile Documents/com~apple~CloudDocs/";
    home.makeFileOfSize(cloud + "here.pdf", 9000);
    home.makeFile(cloud + "evicted.pdf", "");
    ASSERT_EQ(truncate(home.at(cloud + "evicted.pdf").path().c_str(), 1 << 20), 0);
    EXPECT_THAT(found(ICloudCleanupScanner(home.url())),
                ElementsAre(cloud + "here.pdf | iCloud Drive"));
}

} // namespace
} // namespace korvane
