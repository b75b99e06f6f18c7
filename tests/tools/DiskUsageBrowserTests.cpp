#include "Korvane/tools/DiskUsageBrowser.h"
#include "KorvaneCore/foundation/Task.h"
#include "tests/support/TemporaryFolder.h"

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const FileURL root("/root");
const FileURL inner("/root/inner");
const FileURL deep("/root/inner/deep");

/// A tree of three folders, one a level, that counts how often each is listed.
class Lister {
  public:
    DiskUsageBrowser::Listing operator()(const FileURL& folder) {
        asked.push_back(folder.path());
        if (meanwhile) {
            meanwhile(folder);
        }
        if (folder == deep) {
            return {};
        }
        const FileURL child = folder == root ? inner : deep;
        return {{.url = child, .sizeBytes = 5, .isDirectory = true},
                {.url = folder.appending("file"), .sizeBytes = 3}};
    }

    std::vector<std::string> asked;
    std::function<void(const FileURL&)> meanwhile;
};

class DiskUsageBrowserTest : public ::testing::Test {
  protected:
    Lister lister;
    DiskUsageBrowser browser{[this](const FileURL& folder, const auto&) { return lister(folder); }};

    std::vector<std::string> crumbs() const {
        std::vector<std::string> paths;
        for (const FileURL& url : browser.view().crumbs) {
            paths.push_back(url.path());
        }
        return paths;
    }
};

TEST_F(DiskUsageBrowserTest, goesDownAndBackAndListsEachFolderOnce) {
    EXPECT_THAT(crumbs(), IsEmpty());
    browser.open(root);
    browser.enter(root.appending("file"));
    browser.enter(deep);
    EXPECT_THAT(crumbs(), ElementsAre("/root"));
    browser.enter(inner);
    browser.enter(deep);
    EXPECT_THAT(crumbs(), ElementsAre("/root", "/root/inner", "/root/inner/deep"));
    EXPECT_THAT(*browser.view().children, IsEmpty());
    browser.goTo(3);
    browser.goTo(1);
    EXPECT_THAT(crumbs(), ElementsAre("/root", "/root/inner"));
    EXPECT_EQ(browser.view().children->front().url, deep);
    browser.open(deep);
    EXPECT_THAT(crumbs(), ElementsAre("/root/inner/deep"));
    EXPECT_THAT(lister.asked, ElementsAre("/root", "/root/inner", "/root/inner/deep"));
    EXPECT_EQ(browser.size(inner), 5);
    EXPECT_EQ(browser.size(root.appending("file")), std::nullopt);
}

TEST_F(DiskUsageBrowserTest, refreshesWhatAChangeInAFolderTouches) {
    browser.refresh();
    EXPECT_THAT(lister.asked, IsEmpty());
    browser.open(FileURL("/root/inner-other"));
    browser.open(root);
    browser.enter(inner);
    browser.enter(deep);
    browser.goTo(1);
    lister.asked.clear();
    browser.refresh();
    EXPECT_THAT(crumbs(), ElementsAre("/root", "/root/inner"));
    EXPECT_EQ(browser.size(inner), std::nullopt); // only what is in it was measured
    browser.enter(deep);
    browser.goTo(0);
    browser.open(FileURL("/root/inner-other"));
    EXPECT_THAT(lister.asked, ElementsAre("/root/inner", "/root/inner/deep", "/root"));
}

TEST_F(DiskUsageBrowserTest, keepsAListingThatComesTooLateForLater) {
    lister.meanwhile = [&](const FileURL& folder) {
        if (folder == root) {
            EXPECT_TRUE(browser.view().isLoading);
            EXPECT_EQ(browser.view().children, nullptr);
            browser.open(inner);
        }
    };
    browser.open(root);
    EXPECT_THAT(crumbs(), ElementsAre("/root/inner"));
    EXPECT_EQ(browser.view().children->front().url, deep);
    EXPECT_FALSE(browser.view().isLoading);
    browser.open(root);
    EXPECT_EQ(browser.view().children->front().url, inner);
    EXPECT_THAT(lister.asked, ElementsAre("/root", "/root/inner"));
}

TEST_F(DiskUsageBrowserTest, waitsForAListingThatAnotherThreadIsAt) {
    std::atomic<bool> isBegun = false;
    std::atomic<bool> isFollowed = false;
    lister.meanwhile = [&](const FileURL&) {
        isBegun = true;
        while (!isFollowed) {
            std::this_thread::yield();
        }
        // Time for the other to come and wait.
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    };
    Task first([&] { browser.open(root); });
    while (!isBegun) {
        std::this_thread::yield();
    }
    isFollowed = true;
    browser.open(root);
    first.wait();
    EXPECT_THAT(lister.asked, ElementsAre("/root"));
    EXPECT_EQ(browser.view().children->size(), 2U);
}

TEST_F(DiskUsageBrowserTest, showsAFailureAndTriesAgain) {
    lister.meanwhile = [](const FileURL&) { throw std::runtime_error("no way in"); };
    browser.open(root);
    EXPECT_EQ(browser.view().failure, "no way in");
    EXPECT_EQ(browser.view().children, nullptr);
    EXPECT_FALSE(browser.view().isLoading);
    lister.meanwhile = nullptr;
    browser.goTo(0);
    EXPECT_EQ(browser.view().failure, "");
    EXPECT_EQ(browser.view().children->size(), 2U);
}

TEST_F(DiskUsageBrowserTest, neitherShowsNorKeepsSizesCutShort) {
    lister.meanwhile = [](const FileURL&) { Task::cancel(*Task::current()); };
    Task([&] { browser.open(root); }).wait();
    EXPECT_EQ(browser.view().children, nullptr);
    EXPECT_FALSE(browser.view().isLoading);
    EXPECT_EQ(browser.size(inner), std::nullopt);
    lister.meanwhile = nullptr;
    browser.open(root);
    EXPECT_EQ(browser.view().children->size(), 2U);
}

TEST(DiskUsageBrowser, measuresRealFoldersOnce) {
    const testing::TemporaryFolder folder;
    folder.makeFileOfSize("a/b/c", 65'536);
    DiskUsageBrowser browser;
    browser.open(folder.at("a"));
    EXPECT_EQ(browser.size(folder.at("a/b")), 65'536);
    folder.makeFileOfSize("a/b/d", 65'536);
    browser.open(folder.url());
    EXPECT_EQ(browser.size(folder.at("a")), 131'072);
    browser.enter(folder.at("a"));
    EXPECT_EQ(browser.view().children->front().sizeBytes, 65'536);
    browser.open(folder.at("missing"));
    EXPECT_THAT(browser.view().failure, ::testing::HasSubstr("No such file"));
}

} // namespace
} // namespace korvane
