#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/platform/UserDefaults.h"
#include "tests/support/TemporaryFolder.h"

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

using namespace korvane;
using namespace korvane::testing;

namespace {

TEST(UserDefaults, keepsWhatItDoesNotKnowInItsPlace) {
    const TemporaryFolder folder;
    folder.makeFile("defaults.json", R"({"other.app":[1,2],"korvane.a":1,"korvane.b":"x"})");
    UserDefaults defaults(folder.at("defaults.json"));
    defaults.set("korvane.a", "gr\u00FCn");
    defaults.set("korvane.c", true);
    EXPECT_EQ(Json::parse(folder.content("defaults.json")),
              Json::parse("{\"other.app\":[1,2],\"korvane.a\":\"gr\u00FCn\",\"korvane.b\":\"x\","
                          "\"korvane.c\":true}"));
    EXPECT_EQ(folder.listing(), std::vector<std::string>{"defaults.json"});
}

TEST(UserDefaults, readsTextNumbersAndBooleansAsText) {
    const TemporaryFolder folder;
    const UserDefaults defaults(
        folder.makeFile("d.json", R"({"t":"a b","n":-3,"f":0.5,"b":false,"o":{},"z":null})"));
    EXPECT_EQ(defaults.string("t"), "a b");
    EXPECT_EQ(defaults.string("n"), "-3");
    EXPECT_EQ(defaults.string("f"), "0.5");
    EXPECT_EQ(defaults.string("b"), "false");
    for (const char* key : {"o", "z", "missing"}) {
        EXPECT_EQ(defaults.string(key), std::nullopt) << key;
    }
}

TEST(UserDefaults, neverOverwritesAFileThatIsNoObject) {
    const TemporaryFolder folder;
    for (const char* content : {"{\"korvane.a\":", "[]", ""}) {
        UserDefaults defaults(folder.makeFile("d.json", content));
        EXPECT_THROW(defaults.set("korvane.a", 1), DecodingError) << content;
        EXPECT_EQ(folder.content("d.json"), content);
        EXPECT_EQ(defaults.string("korvane.a"), std::nullopt);
        EXPECT_TRUE(defaults.all().empty());
    }
    folder.makeFile("file");
    UserDefaults unreachable(folder.at("file/d.json"));
    EXPECT_THROW(unreachable.set("korvane.a", 1), FileError);
}

TEST(UserDefaults, refusesValuesThatTheFileCouldNotHold) {
    const TemporaryFolder folder;
    UserDefaults defaults(folder.at("d.json"));
    EXPECT_THROW(defaults.set("korvane.a", "\xFF"), DecodingError);
    EXPECT_THROW(defaults.set("korvane.a", Json::array()), DecodingError);
    EXPECT_THROW(defaults.set("\xFF", 1), DecodingError);
    EXPECT_FALSE(folder.exists("d.json"));
}

TEST(UserDefaults, losesNoChangeOfAnotherProcess) {
    const TemporaryFolder folder;
    constexpr int each = 15;
    UserDefaults defaults(folder.at("deep/er/d.json"));
    const auto setAll = [&](const std::string& prefix) {
        for (int i = 0; i < each; ++i) {
            defaults.set(prefix + std::to_string(i), i);
        }
    };
    const pid_t child = fork();
    if (child == 0) {
        setAll("child.");
        _exit(0);
    }
    setAll("parent.");
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(defaults.all().size(), 2U * each);
}

} // namespace
