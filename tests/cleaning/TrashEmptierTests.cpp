#include "KorvaneCore/cleaning/ExclusionStore.h"
#include "KorvaneCore/cleaning/TrashEmptier.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/BinFolders.h"
#include "KorvaneCore/scanners/TrashScanner.h"
#include "tests/support/FakeProcessLauncher.h"
#include "tests/support/TemporaryFolder.h"

#include <thread>

#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using testing::FakeProcessLauncher;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class TrashEmptierTest : public ::testing::Test {
  protected:
    TrashEmptierTest() { home.makeFolder("Documents"); }

    /// Something in the home Bin with its note.
    void trash(const std::string& name, std::size_t bytes = 9000) const {
        home.makeFileOfSize("data/Trash/files/" + name, bytes);
        const std::string entry = name.substr(0, name.find('/'));
        home.makeFile("data/Trash/info/" + entry + ".trashinfo", "[Trash Info]\n");
    }

    ScanItem bin(const std::string& name = "data/Trash/files") const {
        ScanItem item;
        item.url = home.at(name);
        item.sizeBytes = binContentSize(item.url, ProcessLauncher::standard());
        item.isDirectory = true;
        return item;
    }

    TrashEmptier::Outcome empty(const std::vector<ScanItem>& bins) const {
        return TrashEmptier(exclusions, folders).empty(bins);
    }

    void protect(const std::string& name) {
        exclusions.add({UUID::random(), home.at(name).path(), ""});
    }

    testing::TemporaryFolder home;
    UserFolders folders{home.url(), home.at("data"), home.at("config"), home.at("tmp")};
    ExclusionStore exclusions{home.at("data/exclusions.json"), home.url()};
};

TEST_F(TrashEmptierTest, removesEverythingWithItsNotesAndClearsOldOrphans) {
    trash("file");
    trash("folder/deep/x");
    trash(".hidden");
    home.makeLink("data/Trash/files/link", home.at("Documents").path());
    home.makeFile("Documents/letter");
    home.makeFile("data/Trash/info/gone.trashinfo");
    home.setModified("data/Trash/info/gone.trashinfo", 1e9);
    home.makeFile("data/Trash/info/arriving.trashinfo"); // its payload comes in a moment
    const ScanItem before = bin();
    const auto outcome = empty({before});
    EXPECT_THAT(outcome.failures, IsEmpty());
    ASSERT_EQ(outcome.emptied.size(), 1U);
    EXPECT_EQ(outcome.emptied[0], before);
    EXPECT_GT(before.sizeBytes, 27000);
    EXPECT_THAT(home.listing("data/Trash"),
                ElementsAre("files/", "info/", "info/arriving.trashinfo"));
    EXPECT_TRUE(home.exists("Documents/letter"));
}

TEST_F(TrashEmptierTest, keepsEveryEntryThatHoldsSomethingProtected) {
    trash("kept/deep/x", 50000);
    trash("exact", 20000);
    trash("goes", 9000);
    protect("data/Trash/files/kept/deep/x");
    protect("data/Trash/files/exact");
    const ScanItem before = bin();
    const auto outcome = empty({before});
    EXPECT_THAT(home.listing("data/Trash"),
                ElementsAre("files/", "files/exact", "files/kept/", "files/kept/deep/",
                            "files/kept/deep/x", "info/", "info/exact.trashinfo",
                            "info/kept.trashinfo"));
    EXPECT_THAT(outcome.failures, IsEmpty());
    ASSERT_EQ(outcome.emptied.size(), 1U);
    EXPECT_GE(outcome.emptied[0].sizeBytes, 9000);
    EXPECT_LT(outcome.emptied[0].sizeBytes, 20000);
}

TEST_F(TrashEmptierTest, touchesNothingThatIsNoBinFolder) {
    home.makeFile("Documents/letter");
    home.makeFolder("sub/.Trash");
    home.makeLink(".Trash", home.at("Documents").path());
    home.makeFile("disk/.Trashes/0x/y");
    const std::string own = "disk/.Trashes/" + std::to_string(geteuid());
    home.makeFileOfSize(own + "/x", 9000);
    const auto outcome = empty({bin("Documents"), bin("sub/.Trash"), bin("disk/.Trashes"),
                                bin("disk/.Trashes/0x"), bin(own), bin(".Trash")});
    EXPECT_EQ(outcome.protectedFailures.size(), 4U);
    for (const CleanupFailure& failure : outcome.protectedFailures) {
        EXPECT_EQ(failure.kind, CleanupFailure::Kind::protectedLocation);
        EXPECT_EQ(failure.error, "Korvane only empties Bin folders, and this path isn't one, so it "
                                 "was left untouched.");
    }
    ASSERT_EQ(outcome.failures.size(), 1U) << "a Bin that is a link is not followed";
    EXPECT_THAT(outcome.failures[0].error, HasSubstr("wouldn't let Korvane read this Bin folder"));
    EXPECT_EQ(outcome.emptied.size(), 1U);
    EXPECT_TRUE(home.exists("Documents/letter"));
    EXPECT_TRUE(home.exists("disk/.Trashes/0x/y"));
    EXPECT_FALSE(home.exists(own + "/x"));
}

TEST_F(TrashEmptierTest, listsAFewLeftoversAndSumsUpMany) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root may remove everything";
    }
    const auto stubborn = [&](int count) {
        for (int i = 0; i < count; ++i) {
            const std::string name = "s" + std::to_string(i);
            trash(name + "/x");
            chmod(home.at("data/Trash/files/" + name).path().c_str(), 0500);
        }
    };
    const auto release = [&](int count) {
        for (int i = 0; i < count; ++i) {
            chmod(home.at("data/Trash/files/s" + std::to_string(i)).path().c_str(), 0700);
        }
    };
    stubborn(5);
    auto outcome = empty({bin()});
    ASSERT_EQ(outcome.failures.size(), 5U);
    EXPECT_EQ(outcome.failures[0].error, "macOS refused to delete this out of the Bin.");
    EXPECT_EQ(outcome.failures[0].item.url, home.at("data/Trash/files/s0"));
    EXPECT_THAT(outcome.emptied, IsEmpty());
    EXPECT_TRUE(home.exists("data/Trash/info/s0.trashinfo"));
    release(5);
    stubborn(6);
    trash("kept");
    protect("data/Trash/files/kept");
    outcome = empty({bin()});
    ASSERT_EQ(outcome.failures.size(), 1U);
    EXPECT_THAT(outcome.failures[0].error,
                HasSubstr("and macOS refused 6 items. Emptying it from"));
    release(6);
}

TEST_F(TrashEmptierTest, countsWhatIsLeftWhenItIsStopped) {
    for (int i = 0; i < 3000; ++i) {
        trash("n" + std::to_string(i), 5000);
    }
    const auto left = [&](const char* folder) { return home.listing(folder).size(); };
    const ScanItem before = bin();
    TrashEmptier::Outcome outcome;
    Task task([&] { outcome = empty({before}); });
    while (left("data/Trash/files") == 3000 && !task.isFinished()) {
        std::this_thread::yield();
    }
    task.cancel();
    task.wait();
    ASSERT_EQ(outcome.emptied.size(), 1U);
    EXPECT_EQ(outcome.emptied[0].sizeBytes, before.sizeBytes - bin().sizeBytes);
    EXPECT_EQ(left("data/Trash/files"), left("data/Trash/info"));
    EXPECT_THAT(outcome.failures, IsEmpty());
}

TEST_F(TrashEmptierTest, asksFinderOnlyForTheUsersOwnBinAndOnlyWhenNothingIsProtected) {
    struct Case {
        const char* name;
        bool isProtected;
        bool finderSucceeds;
        std::size_t runs;
        std::vector<std::string> left;
    };
    const Case cases[] = {
        {"Finder does it", false, true, 1, {"a", "b"}}, // this Finder only says so
        {"Finder fails", false, false, 1, {}},
        {"a protected entry", true, true, 0, {"a"}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        home.makeFile(".Trash/a");
        home.makeFile(".Trash/b");
        std::size_t runs = 0;
        FakeProcessLauncher launcher([&](const ProcessRequest& request) {
            if (request.executable != "/usr/bin/osascript") {
                return FakeProcessLauncher::saying("4\t.");
            }
            ++runs;
            EXPECT_THAT(request.arguments,
                        ElementsAre("-e", "tell application \"Finder\" to empty trash"));
            return one.finderSucceeds ? FakeProcessLauncher::saying("") : ProcessOutcome();
        });
        if (one.isProtected) {
            protect(".Trash/a");
        }
        (void)TrashEmptier(exclusions, folders, launcher, home.at(".Trash"))
            .empty(std::vector{bin(".Trash")});
        EXPECT_EQ(runs, one.runs);
        EXPECT_EQ(home.listing(".Trash"), one.left);
    }
}

} // namespace
} // namespace korvane
