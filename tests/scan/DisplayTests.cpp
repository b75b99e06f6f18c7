#include "KorvaneCore/scan/ByteDisplay.h"
#include "KorvaneCore/scan/PathDisplay.h"

#include <limits>

#include <gtest/gtest.h>

namespace korvane {
namespace {

TEST(ByteDisplay, readsInDecimalUnits) {
    struct Row {
        std::int64_t bytes;
        const char* text;
    };
    const Row rows[] = {
        {0, "0 bytes"},
        {-5, "0 bytes"},
        {std::numeric_limits<std::int64_t>::min(), "0 bytes"},
        {1, "1 byte"},
        {2, "2 bytes"},
        {999, "999 bytes"},
        {1000, "1 KB"},
        {1499, "1 KB"},
        {1500, "2 KB"},
        {532'000, "532 KB"},
        {999'499, "999 KB"},
        {999'500, "1 MB"},
        {999'999, "1 MB"},
        {5'000'000, "5 MB"},
        {5'049'999, "5 MB"},
        {5'050'000, "5.1 MB"},
        {12'345'678, "12.3 MB"},
        {999'949'999, "999.9 MB"},
        {999'950'000, "1 GB"},
        {999'999'999, "1 GB"},
        {1'000'000'000, "1.0 GB"},
        {1'234'567'890, "1.2 GB"},
        {9'960'000'000, "10.0 GB"},
        {10'000'000'000, "10 GB"},
        {12'345'678'901, "12 GB"},
        {1'500'000'000'000, "1500 GB"},
        {std::numeric_limits<std::int64_t>::max(), "9223372037 GB"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(ByteDisplay::format(row.bytes), row.text) << row.bytes;
        EXPECT_EQ(ByteDisplay::formatAmount(row.bytes), row.bytes < 1 ? "nothing" : row.text);
    }
}

TEST(PathDisplay, shortensTheMiddleAndNamesTheHomeFolder) {
    struct Row {
        const char* path;
        std::size_t maximum;
        const char* shown;
    };
    const Row rows[] = {
        {"/Users/ann", 4, "~"},
        {"/Users/ann/Library/Caches", 4, "~/Library/Caches"},
        {"/Users/anna/x", 4, "/Users/anna/x"},
        {"/Users/ann/Library/Application Support/Foo/Cache", 4, "~/…/Foo/Cache"},
        {"/System/Volumes/Data/private/var/folders", 4, "/System/…/var/folders"},
        {"/a/b/c/d", 4, "/a/b/c/d"},
        {"/Users/ann/a/b/c", 4, "~/a/b/c"},
        {"/Users/ann/a/b/c/d", 4, "~/…/c/d"},
        {"/Users/ann/a/b/c/d", 2, "~/…"},
        {"/a//b/c/", 4, "/a//b/c/"},
        {"a/b/c/d/e", 3, "a/…/e"},
        {"/a/b/c/d\xFF/e", 4, "/a/…/d\xFF/e"},
        {"", 4, ""},
        {"/", 4, "/"},
        {"/x", 1, "/x"},
    };
    const FileURL home("/Users/ann");
    for (const Row& row : rows) {
        EXPECT_EQ(PathDisplay::shorten(row.path, row.maximum, home), row.shown) << row.path;
    }
    EXPECT_EQ(PathDisplay::shorten("/a/b", 4, FileURL()), "/a/b");
    EXPECT_EQ(PathDisplay::shorten("/a/b", 4, FileURL("/")), "/a/b");
}

TEST(PathDisplayDeathTest, cannotShortenBelowTwoComponents) {
    EXPECT_DEATH((void)PathDisplay::shorten("/a/b/c", 1, FileURL("/home")), "fatal");
}

} // namespace
} // namespace korvane
