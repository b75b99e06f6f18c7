#include "KorvaneCore/scan/ModuleScanner.h"
#include "KorvaneCore/scan/ScanResult.h"

#include <limits>
#include <unordered_set>

#include <gtest/gtest.h>

namespace korvane {
namespace {

ScanItem sampleItem() {
    return {.url = FileURL("/Users/ann/Library/Caches/a \xFF%"),
            .sizeBytes = 1'234'567'890,
            .lastModified = Date(750'000'000.123456789),
            .category = "Developer · Xcode",
            .heuristicID = "dev.xcode.archives",
            .isDirectory = true};
}

TEST(ScanItem, isWrittenUnderItsFieldNames) {
    ScanItem item = sampleItem();
    item.id = *UUID::fromText("0f8fad5b-d9cb-469f-a165-70867728950e");
    EXPECT_EQ(compactJson(item.toJson(DateForm::iso8601)),
              R"({"id":"0F8FAD5B-D9CB-469F-A165-70867728950E",)"
              R"("url":"file:///Users/ann/Library/Caches/a%20%FF%25","sizeBytes":1234567890,)"
              R"("lastModified":"2024-10-07T13:20:00Z","category":"Developer · Xcode",)"
              R"("heuristicID":"dev.xcode.archives","isDirectory":true})");
    item.lastModified.reset();
    EXPECT_FALSE(item.toJson(DateForm::iso8601).contains("lastModified"));
}

TEST(ScanItem, readsBackWhatItWrote) {
    ScanItem item = sampleItem();
    const auto again = [](const ScanItem& written) {
        return ScanItem::fromJson(
            parseJson(compactJson(written.toJson(DateForm::secondsSinceReferenceDate))));
    };
    EXPECT_EQ(again(item), item);
    item.sizeBytes = std::numeric_limits<std::int64_t>::min();
    item.lastModified.reset();
    EXPECT_EQ(again(item), item);
}

TEST(ScanItem, refusesARecordOfAnotherForm) {
    const Json whole = sampleItem().toJson(DateForm::iso8601);
    for (const auto& [key, value] : whole.items()) {
        Json lacking = whole;
        lacking.erase(key);
        if (key == "lastModified") {
            EXPECT_EQ(ScanItem::fromJson(lacking).lastModified, std::nullopt);
        } else {
            EXPECT_THROW((void)ScanItem::fromJson(lacking), DecodingError) << key;
        }
        Json wrong = whole;
        wrong[key] = Json::array();
        EXPECT_THROW((void)ScanItem::fromJson(wrong), DecodingError) << key;
    }
    const std::pair<const char*, Json> bad[] = {
        {"id", "0F8FAD5B-D9CB-469F-A165-70867728950"},
        {"url", "/Users/ann"},
        {"url", "file://elsewhere/a"},
        {"url", "file:relative"},
        {"url", "https://example.org/a"},
        {"url", "file:///a%00b"},
        {"url", "file:///a%4"},
        {"url", nullptr},
        {"sizeBytes", 1.5},
        {"sizeBytes", "12"},
        {"sizeBytes", 9'223'372'036'854'775'808U},
        {"lastModified", "yesterday"},
        {"isDirectory", 1},
        {"category", nullptr},
    };
    for (const auto& [key, value] : bad) {
        Json wrong = whole;
        wrong[key] = value;
        EXPECT_THROW((void)ScanItem::fromJson(wrong), DecodingError) << key << " " << value;
    }
    for (const Json& noRecord : {Json(), Json::array(), Json("x"), Json(7)}) {
        EXPECT_THROW((void)ScanItem::fromJson(noRecord), DecodingError) << noRecord;
    }
    Json withNull = whole;
    withNull["lastModified"] = nullptr;
    EXPECT_EQ(ScanItem::fromJson(withNull).lastModified, std::nullopt);
}

TEST(ScanItem, isToldApartByEveryField) {
    const ScanItem item = sampleItem();
    const ScanItem relabelled = item.withHeuristicID("cache.user");
    ScanItem expected = item;
    expected.id = relabelled.id;
    expected.heuristicID = "cache.user";
    EXPECT_EQ(relabelled, expected);
    EXPECT_NE(relabelled.id, item.id);

    std::vector<ScanItem> others(6, item);
    others[0].id = UUID::random();
    others[1].url = FileURL("/other");
    others[2].sizeBytes = 1;
    others[3].lastModified.reset();
    others[4].category = "Mail";
    others[5].isDirectory = false;
    std::unordered_set<ScanItem> distinct{item, item, relabelled};
    distinct.insert(others.begin(), others.end());
    EXPECT_EQ(distinct.size(), 8U);
}

TEST(ScanItem, isKeyedByItsStandardisedPath) {
    ScanItem item;
    for (const char* path : {"/a/b", "/a/./b/", "/x/../a//b", "/a/b/c/.."}) {
        item.url = FileURL(path);
        EXPECT_EQ(itemKey(item), "/a/b") << path;
    }
}

TEST(ScanResult, readsBackWhatItWroteAndRefusesTheRest) {
    const ScanResult result{.scannerID = "cache-cleaner",
                            .startedAt = Date(781'023'164.25),
                            .finishedAt = Date(781'023'166.75),
                            .items = {sampleItem(), sampleItem()}};
    EXPECT_EQ(result.duration(), 2.5);
    EXPECT_EQ(result.formattedTotal(), "2.5 GB");
    const Json whole = parseJson(result.encode(DateForm::secondsSinceReferenceDate));
    EXPECT_EQ(ScanResult::fromJson(parseJson(compactJson(whole))), result);
    EXPECT_EQ(ScanResult::decode(compactJson(whole)), result);
    EXPECT_EQ(ScanResult::decode(result.encode(DateForm::iso8601)).startedAt, Date(781'023'164));
    for (const auto& [key, value] : whole.items()) {
        Json lacking = whole;
        lacking.erase(key);
        EXPECT_THROW((void)ScanResult::fromJson(lacking), DecodingError) << key;
        EXPECT_THROW((void)ScanResult::decode(compactJson(lacking)), DecodingError) << key;
    }
    Json oneBadItem = whole;
    oneBadItem["items"][1].erase("category");
    EXPECT_THROW((void)ScanResult::fromJson(oneBadItem), DecodingError);
    EXPECT_THROW((void)ScanResult::decode(compactJson(oneBadItem)), DecodingError);
    Json noList = whole;
    noList["items"] = Json::object();
    EXPECT_THROW((void)ScanResult::fromJson(noList), DecodingError);
    noList["items"]["inside"] = whole["items"][0];
    EXPECT_THROW((void)ScanResult::decode(compactJson(noList)), DecodingError);
}

TEST(ScanResult, withoutItemsHoldsNothing) {
    const ScanResult empty{.scannerID = "trash"};
    EXPECT_EQ(empty.totalBytes(), 0);
    EXPECT_EQ(empty.formattedTotal(), "0 bytes");
    EXPECT_EQ(empty.encode(DateForm::iso8601),
              R"({"scannerID":"trash","startedAt":"2001-01-01T00:00:00Z",)"
              R"("finishedAt":"2001-01-01T00:00:00Z","items":[]})");
}

TEST(ScanResultDeathTest, neverWrapsATotal) {
    ScanResult result;
    result.items.assign(2, sampleItem());
    result.items[0].sizeBytes = std::numeric_limits<std::int64_t>::max();
    EXPECT_DEATH((void)result.totalBytes(), "fatal.*overflow");
}

} // namespace
} // namespace korvane
