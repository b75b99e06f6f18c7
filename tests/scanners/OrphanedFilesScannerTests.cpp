#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/scanners/InstalledNames.h"
#include "KorvaneCore/scanners/OrphanedFilesScanner.h"
#include "tests/support/FakeSoftwareInventory.h"
#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using testing::bundle;
using ::testing::ElementsAre;
using testing::FakeSoftwareInventory;
using ::testing::IsEmpty;
using testing::TemporaryFolder;

constexpr std::int64_t now = 1'800'000'000;
constexpr std::int64_t day = 86'400;
const std::string support = "Library/Application Support/";
const std::string containers = "Library/Containers/";
const std::string groups = "Library/Group Containers/";

/// A home in which the editor "Kept" is installed.
class OrphanedFilesScannerTests : public ::testing::Test {
  protected:
    /// A folder with one old file in it.
    void makeOld(const std::string& folder, std::size_t size = 100) const {
        home_.makeFileOfSize(folder + "/data/file", size);
        for (const std::string name : {"/data/file", "/data", ""}) {
            age(folder + name, 400);
        }
    }
    void age(const std::string& name, std::int64_t days) const {
        home_.setModified(name, static_cast<double>(now - days * day));
    }
    [[nodiscard]] OrphanedFilesScanner scanner() const {
        return {home_.url(), inventory_, Date::fromUnixSeconds(now), 180.0 * day};
    }
    [[nodiscard]] std::vector<std::string> found() const { return lines(scanner().scan()); }
    /// "path below home | row" of each item.
    [[nodiscard]] std::vector<std::string> lines(const ScanResult& result) const {
        std::vector<std::string> texts;
        texts.reserve(result.items.size());
        for (const ScanItem& item : result.items) {
            texts.push_back(item.path().substr(home_.path().size() + 1) + " | " + item.heuristicID);
        }
        return texts;
    }

    TemporaryFolder home_;
    std::vector<InstalledApplication> installed_{
        bundle(home_.at("Applications"), "com.vendor.Kept", "Kept Writer")};
    std::shared_ptr<const SoftwareInventory> inventory_ = FakeSoftwareInventory::of(installed_);
};

TEST_F(OrphanedFilesScannerTests, findsOldFoldersOfNoInstalledApplicationLargestFirst) {
    makeOld(support + "Gone", 5000);
    makeOld(support + "com.gone.tool", 5000);
    makeOld(containers + "com.gone.app", 90'000);
    makeOld(groups + "AB12CD34EF.com.gone.shared", 20'000);
    makeOld(groups + "group.com.gone", 20'000);
    makeOld(support + "Kept Writer");
    makeOld(containers + "com.vendor.kept.Helper");
    makeOld(groups + "group.com.vendor.family");
    std::vector<ScanProgress> reports;
    const ScanResult result = scanner().scan([&](const ScanProgress& p) { reports.push_back(p); });
    EXPECT_EQ(result.scannerID, "orphaned-files");
    EXPECT_THAT(lines(result),
                ElementsAre(containers + "com.gone.app | orphaned.containers",
                            groups + "AB12CD34EF.com.gone.shared | orphaned.group-containers",
                            groups + "group.com.gone | orphaned.group-containers",
                            support + "Gone | orphaned.app-support",
                            support + "com.gone.tool | orphaned.app-support"));
    for (const ScanItem& item : result.items) {
        EXPECT_TRUE(item.isDirectory);
        EXPECT_EQ(item.category, "Orphaned Files");
        EXPECT_EQ(item.lastModified, Date::fromUnixSeconds(now - 400 * day));
    }
    std::vector<std::string> messages;
    for (std::size_t i = 0; i < reports.size(); ++i) {
        messages.push_back(reports[i].message);
        EXPECT_TRUE(i == 0 || reports[i].fraction > reports[i - 1].fraction) << messages.back();
    }
    EXPECT_THAT(messages, ElementsAre("Checking installed apps…", "Checking Application Support…",
                                      "Measuring Application Support…", "Checking Containers…",
                                      "Measuring Containers…", "Checking Group Containers…",
                                      "Measuring Group Containers…", "Done"));
    EXPECT_EQ(reports.back().fraction, 1.0);
}

TEST_F(OrphanedFilesScannerTests, leavesWhatIsNotAnOldFolderOfItsOwn) {
    for (const char* name : {"com.apple.Old", "Dock", "Korvane", "com.ostrel.Korvane.helper",
                             ".Hidden", "1B4E28BA-2FA1-11D2-883F-0016D3CCA427"}) {
        makeOld(support + name);
    }
    makeOld(groups + "AB12CD34EF.groups.com.apple.podcasts");
    home_.makeFile(support + "Loose File");
    age(support + "Loose File", 400);
    home_.makeFolder(support + "Empty");
    age(support + "Empty", 400);
    const TemporaryFolder elsewhere;
    home_.makeLink(support + "Linked", elsewhere.path());
    makeOld(support + "Maker/Kept-Writer");
    age(support + "Maker", 400);
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(OrphanedFilesScannerTests, takesAnythingThatChangedLatelyForASignOfUse) {
    makeOld(support + "Gone");
    const std::pair<const char*, std::int64_t> changes[] = {
        {"/data/file", 179}, {"/data", 10}, {"", 0}, {"/data/file", -1000}, {"/data/file", 180}};
    for (const auto& [name, days] : changes) {
        age(support + "Gone" + name, days);
        EXPECT_THAT(found(), IsEmpty()) << name << " " << days;
        makeOld(support + "Gone");
    }
    home_.makeFile(support + "Gone/.cache/.deep");
    age(support + "Gone/.cache/.deep", 3);
    age(support + "Gone/.cache", 400);
    age(support + "Gone", 400);
    EXPECT_THAT(found(), IsEmpty()) << "hidden things count";
    age(support + "Gone/.cache/.deep", 181);
    EXPECT_THAT(found(), ElementsAre(support + "Gone | orphaned.app-support"));
    home_.makeLink(support + "Gone/link", home_.makeFile("new").path());
    const std::string link = home_.at(support + "Gone/link").path();
    const timespec old[2] = {{now - 400 * day, 0}, {now - 400 * day, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, link.c_str(), old, AT_SYMLINK_NOFOLLOW), 0);
    age(support + "Gone", 400);
    EXPECT_THAT(found(), ElementsAre(support + "Gone | orphaned.app-support"))
        << "where a link leads is none of the folder's";
}

TEST_F(OrphanedFilesScannerTests, proposesNothingWithoutSureKnowledgeOfWhatIsInstalled) {
    makeOld(support + "Gone");
    inventory_ = FakeSoftwareInventory::of({});
    EXPECT_THAT(found(), IsEmpty());
    inventory_ = FakeSoftwareInventory::of(installed_, false);
    EXPECT_THAT(found(), IsEmpty());
    inventory_ = FakeSoftwareInventory::of(installed_);
    EXPECT_EQ(found().size(), 1U);
}

TEST_F(OrphanedFilesScannerTests, leavesAFolderThatItCannotLookThrough) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "the superuser may read every folder";
    }
    makeOld(support + "Gone");
    ASSERT_EQ(chmod(home_.at(support + "Gone/data").path().c_str(), 0), 0);
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(OrphanedFilesScannerTests, returnsWhatItHadWhenCancelled) {
    makeOld(support + "Gone");
    makeOld(containers + "com.gone.app");
    for (const std::string at : {"Checking installed apps…", "Measuring Application Support…"}) {
        const auto cancellation = Task::makeCancellation();
        const Task::Scope scope(cancellation);
        std::string last;
        const ScanResult result = scanner().scan([&](const ScanProgress& report) {
            last = report.message;
            if (last == at) {
                Task::cancel(*cancellation);
            }
        });
        EXPECT_EQ(last, at);
        EXPECT_THAT(result.items, IsEmpty());
    }
    const auto cancellation = Task::makeCancellation();
    const Task::Scope scope(cancellation);
    EXPECT_THAT(lines(scanner().scan([&](const ScanProgress& report) {
                    if (report.message == "Checking Containers…") {
                        Task::cancel(*cancellation);
                    }
                })),
                ElementsAre(support + "Gone | orphaned.app-support"));
}

TEST(InstalledNames, takesEverythingForInstalledThatMayBe) {
    const FileURL folder("/Applications");
    std::vector<InstalledApplication> installed{
        bundle(folder, "com.sublimetext.4", "Sublime Text"),
        bundle(folder, "com.brave.Browser", "Brave Browser"),
        bundle(folder, "us.zoom.xos", "zoom.us"),
        bundle(folder, "com.github.SomeOne.Thing", "Thing"),
        bundle(folder, "com.vendor.suite.app", "Über Süd"),
        bundle(folder, "", "Baldur's Gate 3"),
        bundle(folder, "", "R")};
    installed[4].aliases = {"com.helpers.agent"};
    const InstalledNames names(installed);
    struct Case {
        const char* name;
        bool mayOwn;
        bool mayShare;
    };
    const Case cases[] = {
        {"Sublime Text 3", true, true},
        {"sublime-text", true, true},
        {"SUBLIME", true, true},
        {"Sub", false, false},
        {"BraveSoftware", true, true},
        {"Brave", true, true},
        {"com.brave.browser", true, true},
        {"com.Brave.Browser.helper", true, true},
        {"com.brave.Browser-beta", true, true},
        {"com.brave.Browsers", false, true},
        {"com.brave", true, true},
        {"com.brave.Other", false, true},
        {"com", false, false},
        {"com.gone.browser", false, false},
        {"com.gone.sublime-text", true, true},
        {"zoom.us", true, true},
        {"zoom", true, true},
        {"ZoomPhone", true, true},
        {"com.github.SomeOne", true, true},
        {"com.github.Other.Gone", false, false},
        {"group.com.github.SomeOne.files", false, true},
        {"AB12CD34EF.com.vendor.suite", true, true},
        {"com.helpers.AGENT", true, true},
        {"u\u0308ber su\u0308d", true, true},
        {"ÜBER SÜD", true, true},
        {"Baldurs Gate 3", true, true},
        {"r", true, true},
        {"Red", false, false},
        {"---", true, true},
        {"tool-1.2.3", false, false},
        {"Gone", false, false},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(names.mayOwn(one.name), one.mayOwn) << one.name;
        EXPECT_EQ(names.mayShare(one.name), one.mayShare) << one.name;
    }
    EXPECT_FALSE(InstalledNames({}).mayOwn("Gone"));
}

} // namespace
} // namespace korvane
