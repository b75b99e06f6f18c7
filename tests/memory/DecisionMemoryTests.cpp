#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/memory/DecisionMemory.h"
#include "tests/support/TemporaryFolder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using testing::TemporaryFolder;

constexpr double day = 86'400;
const Date today(800'000'000.25);

std::vector<ScanItem> items(std::initializer_list<const char*> paths) {
    std::vector<ScanItem> result;
    for (const char* path : paths) {
        result.push_back({.url = FileURL(path)});
    }
    return result;
}

ScanItem item(const char* path) {
    return {.url = FileURL(path)};
}

class DecisionMemoryTest : public ::testing::Test {
  protected:
    [[nodiscard]] DecisionMemory open() const { return DecisionMemory(file(), today); }
    [[nodiscard]] FileURL file() const { return folder.at("Korvane/decisions.json"); }
    /// What a fresh process knows about the item.
    [[nodiscard]] std::optional<Date> stored(const char* path) const {
        return open().skipDate(item(path), today);
    }

    TemporaryFolder folder;
};

TEST_F(DecisionMemoryTest, remembersByStandardisedPathAcrossProcesses) {
    DecisionMemory memory = open();
    memory.recordSkips(items({"/a/./b", "/odd\xFF\n", "/c"}), today.adding(-5));
    memory.recordSkips(items({"/a/b"}), today);
    memory.forget(items({"/x/../c", "/never"}));
    for (const char* path : {"/a/b", "/q/../a/b/"}) {
        EXPECT_EQ(memory.skipDate(item(path), today), today) << path;
        EXPECT_EQ(stored(path), today) << path;
    }
    EXPECT_EQ(stored("/odd\xFF\n"), today.adding(-5));
    EXPECT_EQ(stored("/c"), std::nullopt);
    EXPECT_THAT(folder.listing("Korvane"), ElementsAre("decisions.json"));
    const Json records = parseJson(folder.content("Korvane/decisions.json"));
    EXPECT_THAT(std::vector<Json>(records.begin(), records.end()),
                ::testing::UnorderedElementsAre(
                    Json({{"path", "/a/b"}, {"date", 800'000'000.25}}),
                    Json({{"path", "file:///odd%FF%0A"}, {"date", 799'999'995.25}})));
}

TEST_F(DecisionMemoryTest, doesNothingForNoItems) {
    DecisionMemory memory = open();
    memory.recordSkips({}, today);
    memory.forget({});
    EXPECT_FALSE(folder.exists("Korvane"));
}

TEST_F(DecisionMemoryTest, forgetsAfter180Days) {
    DecisionMemory memory = open();
    memory.recordSkips(items({"/a"}), today);
    const std::pair<double, bool> rows[] = {
        {0, true}, {180 * day - 1, true}, {180 * day, false}, {181 * day, false}, {-day, true}};
    for (const auto& [elapsed, known] : rows) {
        const Date later = today.adding(elapsed);
        EXPECT_EQ(memory.skipDate(item("/a"), later).has_value(), known) << elapsed;
        EXPECT_EQ(DecisionMemory(file(), later).skipDate(item("/a"), today).has_value(), known)
            << elapsed;
    }
    memory.recordSkips(items({"/old"}), today.adding(-181 * day));
    EXPECT_EQ(stored("/old"), std::nullopt);
    DecisionMemory next = open();
    next.recordSkips(items({"/new"}), today);
    EXPECT_EQ(parseJson(folder.content("Korvane/decisions.json")).size(), 2U);
}

TEST_F(DecisionMemoryTest, startsEmptyFromAFileThatDoesNotDecode) {
    const char* contents[] = {"",
                              "{}",
                              "[7]",
                              R"([{"path":"/a"}])",
                              R"([{"date":8e8}])",
                              R"([{"path":"/a","date":8e8},{"path":1,"date":8e8}])",
                              R"([{"path":"/a","date":"soon"}])",
                              "[{\"path\":\"/a\xFF\"}]",
                              R"([{"path":"/a","date":1e999}])"};
    for (const char* content : contents) {
        folder.makeFile("Korvane/decisions.json", content);
        EXPECT_EQ(stored("/a"), std::nullopt) << content;
        DecisionMemory memory = open();
        memory.recordSkips(items({"/b"}), today);
        EXPECT_EQ(stored("/b"), today) << content;
    }
}

TEST_F(DecisionMemoryTest, twoProcessesLoseNothingOfEachOther) {
    DecisionMemory first = open();
    DecisionMemory second = open();
    first.recordSkips(items({"/a", "/b"}), today);
    second.recordSkips(items({"/c"}), today);
    EXPECT_EQ(stored("/a"), today);
    EXPECT_EQ(second.skipDate(item("/a"), today), today);
    second.forget(items({"/a"}));
    first.recordSkips(items({"/d"}), today);
    EXPECT_EQ(stored("/a"), std::nullopt) << "what one forgot must not come back from the other";
    EXPECT_EQ(stored("/b"), today);
    EXPECT_EQ(stored("/c"), today);
}

TEST_F(DecisionMemoryTest, manyWritersAtOnceLoseNothing) {
    constexpr int writers = 4;
    constexpr int rounds = 8;
    TaskGroup group;
    for (int writer = 0; writer < writers; ++writer) {
        group.addTask([this, writer] {
            DecisionMemory memory = open();
            for (int round = 0; round < rounds; ++round) {
                memory.recordSkips(items({fmt::format("/{}/{}", writer, round).c_str()}), today);
            }
        });
    }
    group.waitForAll();
    EXPECT_EQ(parseJson(folder.content("Korvane/decisions.json")).size(), writers * rounds);
}

TEST_F(DecisionMemoryTest, keepsWorkingFromMemoryAndSavesLater) {
    folder.makeFile("Korvane"); // a file where the folder should be
    DecisionMemory memory = open();
    memory.recordSkips(items({"/a", "/b"}), today);
    memory.forget(items({"/b"}));
    EXPECT_EQ(memory.skipDate(item("/a"), today), today);
    EXPECT_EQ(memory.skipDate(item("/b"), today), std::nullopt);
    std::remove(folder.at("Korvane").path().c_str());
    memory.recordSkips(items({"/c"}), today);
    EXPECT_EQ(stored("/a"), today);
    EXPECT_EQ(stored("/b"), std::nullopt);
    EXPECT_EQ(stored("/c"), today);

    std::remove(file().path().c_str()); // the whole memory is written anew
    memory.recordSkips(items({"/d"}), today);
    EXPECT_EQ(stored("/a"), today);
}

} // namespace
} // namespace korvane
