#include "tests/command/CommandFixture.h"

#include <gmock/gmock.h>

namespace korvane::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class UsageCommandTest : public CommandTest {
  protected:
    UsageCommandTest() {
        folder.makeFileOfSize("tree/big/film.mp4", 131'072);
        folder.makeFileOfSize("tree/big/.cache", 65'536);
        folder.makeFileOfSize("tree/a <b> & \"\xFF\n", 65'536);
        folder.makeFolder("tree/.empty");
    }

    const std::string tree = folder.at("tree").path();
};

TEST_F(UsageCommandTest, listsAndLaysOutWhatAFolderHolds) {
    const Json listing = korvane({"usage", tree, "--treemap", "300x200.5", "--json"}).json();
    EXPECT_EQ(listing.at("url"), FileURL(tree).absoluteString());
    const Json& children = listing.at("children");
    ASSERT_EQ(children.size(), 3U);
    std::vector<std::string> keys;
    for (const auto& member : children.at(0).items()) {
        keys.push_back(member.key());
    }
    EXPECT_THAT(keys, ::testing::ElementsAre("id", "url", "name", "sizeBytes", "isDirectory",
                                             "childCount", "lastModified"));
    EXPECT_EQ(children.at(0).at("name"), "big");
    EXPECT_EQ(children.at(0).at("sizeBytes"), 131'072);
    EXPECT_EQ(children.at(0).at("childCount"), 2);
    EXPECT_EQ(children.at(1).at("name"), "a <b> & \"\\xFF\\n");
    EXPECT_EQ(children.at(1).at("url"), FileURL(tree + "/a <b> & \"\xFF\n").absoluteString());
    EXPECT_EQ(children.at(2).at("sizeBytes"), 0);
    const Json& rectangles = listing.at("rectangles");
    ASSERT_EQ(rectangles.size(), 3U);
    EXPECT_DOUBLE_EQ(rectangles.at(0).at("width"), 200);
    EXPECT_DOUBLE_EQ(rectangles.at(1).at("x"), 200);
    EXPECT_DOUBLE_EQ(rectangles.at(1).at("height"), 200.5);

    const Json all = korvane({"usage", tree, "--include-hidden", "--json"}).json();
    EXPECT_EQ(all.at("children").at(0).at("sizeBytes"), 196'608);
    EXPECT_FALSE(all.contains("rectangles"));
}

TEST_F(UsageCommandTest, readsWellInATerminal) {
    const std::string output = korvane({"usage", tree}).output;
    EXPECT_THAT(output, HasSubstr(tree + "  3 items · 197 KB\n"));
    EXPECT_THAT(output, HasSubstr("   131 KB   66.7 %  ████████████████████  big/  2 items\n"));
    EXPECT_THAT(output, HasSubstr("    66 KB   33.3 %  ██████████            a <b>"));
}

TEST_F(UsageCommandTest, drawsAPictureThatAnyViewerReads) {
    EXPECT_EQ(korvane({"usage", tree, "--svg", folder.at("map.svg").path()}).status, 0);
    const std::string picture = folder.content("map.svg");
    EXPECT_THAT(picture, HasSubstr("width=\"1232.00\""));
    EXPECT_THAT(picture, HasSubstr(">big</text>"));
    EXPECT_THAT(picture, HasSubstr("a &lt;b&gt; &amp; &quot;\\xFF\\n\n66 KB · 33 %</title>"));
    EXPECT_THAT(picture, Not(HasSubstr("<b>")));
    EXPECT_THAT(picture, Not(HasSubstr(".empty")));
    folder.makeFolder("nothing");
    EXPECT_EQ(korvane({"usage", folder.at("nothing").path(), "--treemap", "1x1", "--svg",
                       folder.at("empty.svg").path()})
                  .status,
              0);
    EXPECT_THAT(folder.content("empty.svg"), HasSubstr("0 bytes · 0 entries"));
}

TEST_F(UsageCommandTest, saysWhatCannotBeDone) {
    const std::string file = tree + "/big/film.mp4";
    for (const auto& [arguments, status] :
         {std::pair{std::vector<std::string>{tree + "/missing"}, 1},
          {{file}, 1},
          {{tree, "--svg", file + "/x.svg"}, 1},
          {{tree, "--treemap", "300"}, 2},
          {{tree, "--treemap", "0x5"}, 2},
          {{tree, "--treemap", "4x-5"}, 2},
          {{tree, "--treemap", "4x5x6"}, 2},
          {{tree, "--treemap", "infxnan"}, 2}}) {
        std::vector<std::string> all = {"usage"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const Run run = korvane(all);
        EXPECT_EQ(run.status, status) << arguments.back();
        EXPECT_EQ(run.output, "") << arguments.back();
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
    }
}

} // namespace
} // namespace korvane::testing
