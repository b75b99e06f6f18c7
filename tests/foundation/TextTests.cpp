#include "KorvaneCore/foundation/ComparisonKeys.h"
#include "KorvaneCore/foundation/Text.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using testing::TemporaryFolder;

TEST(Text, knowsUTF8) {
    for (const char* valid : {"", "plain", "ä", "\u07FF\u0800\uFFFF", "\U00010000\U0010FFFF"}) {
        EXPECT_TRUE(isValidUTF8(valid)) << valid;
    }
    for (const std::string_view invalid :
         {"\x80", "a\xC3", "\xC0\xAF", "\xC1\xBF", "\xE0\x80\xAF", "\xE0\x9F\xBF", "\xED\xA0\x80",
          "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "\xE2\x82",
          "\xE2\x28\xA1", "\xF0\x9F\x98"}) {
        EXPECT_FALSE(isValidUTF8(invalid)) << displayText(invalid);
        EXPECT_FALSE(isValidUTF8(std::string(invalid) + "tail"));
    }
}

TEST(Text, showsWhatCannotBeSeen) {
    const std::pair<std::string, const char*> rows[] = {
        {"Fotos für Ömer 漢字 👩\u200D👧", "Fotos für Ömer 漢字 👩\u200D👧"},
        {"a\nb\tc\rd", "a\\nb\\tc\\rd"},
        {"\x1B[31m\x7F", "\\x1B[31m\\x7F"},
        {std::string("a\0b", 3), "a\\x00b"},
        {"\xFF\xC3(", "\\xFF\\xC3("},
        {"exe\u202Egpj", "exe\\u{202E}gpj"},
        {"\u200B\uFEFF\u0085\u2028", "\\u{200B}\\u{FEFF}\\u{0085}\\u{2028}"},
        {"\u00AD", "\\u{00AD}"},
    };
    for (const auto& [bytes, shown] : rows) {
        EXPECT_EQ(displayText(bytes), shown);
    }
}

RC_GTEST_PROP(TextProperty, whatIsShownIsOneLineOfUTF8, (const std::string& bytes)) {
    const std::string shown = displayText(bytes);
    RC_ASSERT(isValidUTF8(shown));
    RC_ASSERT(std::none_of(shown.begin(), shown.end(),
                           [](char c) { return static_cast<unsigned char>(c) < 0x20; }));
    RC_ASSERT(displayText(shown) == shown);
}

TEST(Text, composesThenLowers) {
    const std::pair<const char*, const char*> same[] = {
        {"/Users/Ann", "/users/ann"},
        {"Caf\u00C9", "cafe\u0301"},
        {"I\u0307", "\u0130"},
        {"\u212B", "a\u030A"},
        {"\u1112\u1161\u11AB", "\uD55C"},
        {"\xFF"
         "A\u0308\xFE",
         "\xFF\u00E4\xFE"},
    };
    for (const auto& [one, other] : same) {
        EXPECT_EQ(composedLowercase(one), composedLowercase(other)) << one;
    }
    const std::pair<const char*, const char*> different[] = {{"\xFF", "\xFE"},
                                                             {"\xC3", "\xC3\xA4"},
                                                             {"\xC4", "\xE4"},
                                                             {"a", "\u00E4"},
                                                             {"\xFF", "\uFFFD"}};
    for (const auto& [one, other] : different) {
        EXPECT_NE(composedLowercase(one), composedLowercase(other)) << displayText(one);
    }
    EXPECT_EQ(composedLowercase("I"), "i") << "never by a locale's own rule";
}

TEST(Text, countsColumns) {
    const std::pair<const char*, std::size_t> rows[] = {{"", 0},     {"abc", 3}, {"e\u0301", 1},
                                                        {"漢字", 4}, {"😀", 2},  {"ä·…", 3}};
    for (const auto& [text, width] : rows) {
        EXPECT_EQ(displayWidth(text), width) << text;
    }
}

TEST(ComparisonKeys, areTheLexicalAndTheRealPath) {
    const TemporaryFolder folder;
    folder.makeFile("Real \u00C4/Sub/file");
    folder.makeLink("Link", "Real \u00C4");
    folder.makeLink("link", "Link");
    const std::string base = composedLowercase(folder.path());
    const std::string real = base + "/real \u00E4/sub";
    EXPECT_THAT(comparisonKeys(folder.at("Real \u00C4/./Sub/")), ElementsAre(real));
    EXPECT_THAT(comparisonKeys(folder.at("Link/Sub")), ElementsAre(base + "/link/sub", real));
    EXPECT_THAT(comparisonKeys(folder.at("Link/../none/X")), ElementsAre(base + "/none/x"));
    // Two spellings of one key are one key.
    EXPECT_THAT(comparisonKeys(FileURL("/A"), FileURL("/a")), ElementsAre("/a"));
    EXPECT_THAT(comparisonKeys(FileURL("/")), ElementsAre("/"));
    EXPECT_EQ(enclosingPrefix("/"), "/");
    EXPECT_EQ(enclosingPrefix("/a"), "/a/");
}

} // namespace
} // namespace korvane
