#include "KorvaneCore/memory/ScanResultCache.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using testing::TemporaryFolder;

ScanResult resultOf(std::string scannerID, std::string_view path = "/a") {
    return {.scannerID = std::move(scannerID),
            .startedAt = Date(781'023'164.1234567),
            .finishedAt = Date(781'023'165.5),
            .items = {{.url = FileURL(std::string(path)),
                       .sizeBytes = 12,
                       .lastModified = Date(-0.3),
                       .category = "Logs",
                       .heuristicID = "cache.logs"}}};
}

TEST(ScanResultCache, keepsTheLastResultOfEachScanner) {
    const TemporaryFolder folder;
    const FileURL directory = folder.at("Korvane/ScanCache");
    ScanResultCache cache(directory);
    EXPECT_EQ(cache.load("trash"), std::nullopt);
    const ScanResult trash = resultOf("trash", "/a\xFF\nb");
    EXPECT_FALSE(cache.has("trash"));
    cache.save(resultOf("trash"));
    cache.save(trash);
    EXPECT_TRUE(cache.has("trash"));
    cache.save(resultOf("large files/ä·9_x-Y"));
    EXPECT_EQ(ScanResultCache(directory).load("trash"), trash);
    EXPECT_THAT(folder.listing("Korvane/ScanCache"),
                ElementsAre("large_files___9_x-Y.json", "trash.json"));
    EXPECT_EQ(parseJson(folder.content("Korvane/ScanCache/trash.json"))["startedAt"],
              Json(781'023'164.1234567));
    cache.remove("trash");
    cache.remove("never saved");
    EXPECT_EQ(cache.load("trash"), std::nullopt);
    EXPECT_TRUE(cache.load("large files/ä·9_x-Y"));
}

TEST(ScanResultCache, sumsUpWhatItKeepsWithTheNewestFirst) {
    const TemporaryFolder folder;
    ScanResultCache cache(folder.url());
    EXPECT_TRUE(cache.summaries().empty());
    ScanResult large = resultOf("large-files", "/a\"sizeBytes\":7");
    large.items.push_back(large.items.front());
    large.items.back().sizeBytes = 30;
    cache.save(large);
    ScanResult newer = resultOf("trash");
    newer.finishedAt = large.finishedAt.adding(60);
    newer.items.clear();
    cache.save(newer);
    folder.makeFile("copy.json", large.encode(DateForm::secondsSinceReferenceDate));
    folder.makeFile("broken.json", R"({"scannerID":"broken","finishedAt":1,"items":[{)");
    folder.makeFile("dateless.json", R"({"scannerID":"dateless","items":[]})");
    folder.makeFile("list.json", "[]");
    folder.makeFile("huge.json", R"({"scannerID":"huge","finishedAt":1,"items":[)"
                                 R"({"sizeBytes":9223372036854775807},{"sizeBytes":1}]})");
    EXPECT_THAT(cache.summaries(),
                ElementsAre(ScanSummary{"trash", newer.finishedAt, 0, 0},
                            ScanSummary{"large-files", large.finishedAt, 2, 42}));
}

TEST(ScanResultCache, treatsWhatDoesNotDecodeAsNothing) {
    const TemporaryFolder folder;
    ScanResultCache cache(folder.url());
    const std::string whole = resultOf("x").encode(DateForm::secondsSinceReferenceDate);
    std::string wrongKey = whole;
    wrongKey.replace(wrongKey.find("category"), 8, "kategory");
    for (const std::string& content :
         {std::string(), std::string("{}"), std::string("[]"), std::string("\xFF"), wrongKey,
          whole + "]", std::string(R"([1e999])"), std::string(200'000, '[')}) {
        folder.makeFile("x.json", content);
        EXPECT_EQ(cache.load("x"), std::nullopt) << content.substr(0, 80);
    }
    for (std::size_t length = 1; length < whole.size(); length += 7) {
        folder.makeFile("x.json", whole.substr(0, length));
        EXPECT_EQ(cache.load("x"), std::nullopt) << length;
    }
    folder.makeFolder("y.json");
    EXPECT_EQ(cache.load("y"), std::nullopt);
    cache.save(resultOf("x"));
    EXPECT_TRUE(cache.load("x"));
}

TEST(ScanResultCache, removesOnlyItsOwnKindOfFile) {
    const TemporaryFolder folder;
    const TemporaryFolder outside;
    outside.makeFile("kept.json");
    ScanResultCache cache(folder.url());
    cache.save(resultOf("a"));
    cache.save(resultOf("b"));
    folder.makeFile("notes.txt");
    folder.makeFile("json");
    folder.makeFile("folder.json/inside.json");
    folder.makeLink("linked", outside.path());
    folder.makeLink("link.json", outside.at("kept.json").path());
    cache.removeAll();
    EXPECT_THAT(folder.listing(), ElementsAre("folder.json/", "folder.json/inside.json", "json",
                                              "linked@", "notes.txt"));
    EXPECT_TRUE(outside.exists("kept.json"));
}

TEST(ScanResultCache, worksOnWithoutItsFolder) {
    const TemporaryFolder folder;
    folder.makeFile("file");
    ScanResultCache cache(folder.at("file/ScanCache"));
    cache.save(resultOf("x"));
    EXPECT_EQ(cache.load("x"), std::nullopt);
    cache.remove("x");
    cache.removeAll();
    EXPECT_EQ(folder.content("file"), "x");
}

} // namespace
} // namespace korvane
