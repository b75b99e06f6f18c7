#include "KorvaneCore/foundation/Json.h"
#include "KorvaneCore/foundation/Text.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace korvane {
namespace {

std::string refusal(std::string_view document) {
    try {
        (void)parseJson(document);
        return "accepted";
    } catch (const DecodingError& error) {
        return error.what();
    }
}

TEST(Json, saysWhereADocumentIsWrong) {
    const std::pair<const char*, const char*> rows[] = {
        {"{\"a\":1}\n\n x", "not valid JSON at line 3, column 2"},
        {"[1,\n2,,]", "not valid JSON at line 2, column 3"},
        {"{", "not valid JSON at line 1, column 2"},
        {"", "not valid JSON at line 1, column 1"},
        {" {} ", "accepted"},
    };
    for (const auto& [document, message] : rows) {
        EXPECT_EQ(refusal(document), message) << document;
    }
    for (const std::string& document :
         {std::string("[1e999]"), std::string("\"\xFF\""), std::string("nan"), std::string("'a'"),
          std::string("{\"a\":1,}"), std::string("01"), std::string(100'000, '[')}) {
        EXPECT_NE(refusal(document), "accepted") << document.substr(0, 20);
    }
}

TEST(Json, keepsTheOrderOfKeys) {
    const std::string text = R"({"z":1,"a":{"y":[true,null],"b":"ä"},"m":-9223372036854775808})";
    EXPECT_EQ(compactJson(parseJson(text)), text);
}

TEST(Json, requiresMembersOfTheRightType) {
    const Json object = parseJson(R"({"s":"x","i":-5,"b":true,"f":1.0,
        "top":9223372036854775807,"over":9223372036854775808,"n":null})");
    EXPECT_EQ(requireString(object, "s"), "x");
    EXPECT_EQ(requireInteger(object, "i"), -5);
    EXPECT_EQ(requireInteger(object, "top"), INT64_MAX);
    EXPECT_TRUE(requireBoolean(object, "b"));
    EXPECT_TRUE(requireMember(object, "n").is_null());
    for (const char* key : {"i", "b", "n", "none", "S"}) {
        EXPECT_THROW((void)requireString(object, key), DecodingError) << key;
    }
    for (const char* key : {"s", "b", "f", "over", "n", "none"}) {
        EXPECT_THROW((void)requireInteger(object, key), DecodingError) << key;
    }
    for (const char* key : {"s", "i", "n", "none"}) {
        EXPECT_THROW((void)requireBoolean(object, key), DecodingError) << key;
    }
    EXPECT_THROW((void)requireMember(Json::array({"s"}), "s"), DecodingError);
    try {
        (void)requireString(object, "none");
    } catch (const DecodingError& error) {
        EXPECT_STREQ(error.what(), "\"none\" is missing");
    }
}

TEST(Json, readsDatesInEitherForm) {
    const Date date(781'023'164);
    for (const DateForm form : {DateForm::iso8601, DateForm::secondsSinceReferenceDate}) {
        EXPECT_EQ(decodeDate(encodeDate(date, form), "at"), date);
    }
    EXPECT_EQ(decodeDate(Json(-3), "at"), Date(-3));
    for (const Json& wrong : {Json(), Json(true), Json("today"), Json::object()}) {
        EXPECT_THROW((void)decodeDate(wrong, "at"), DecodingError) << wrong;
    }
}

RC_GTEST_PROP(JsonProperty, anyPathSurvivesAsText, (const std::string& tail)) {
    std::string path = "/" + tail;
    std::erase(path, '\0');
    path = FileURL(path).path();
    const std::string text = pathText(path);
    RC_ASSERT(isValidUTF8(text));
    RC_ASSERT(pathFromText(parseJson(compactJson(Json(text))).get<std::string>()) == path);
}

TEST(Json, writesATextPathAsItIs) {
    EXPECT_EQ(pathText("/a b/ä%20"), "/a b/ä%20");
    EXPECT_EQ(pathText("/a b/\xFF"), "file:///a%20b/%FF");
    EXPECT_EQ(pathFromText("~/kept"), "~/kept");
}

} // namespace
} // namespace korvane
