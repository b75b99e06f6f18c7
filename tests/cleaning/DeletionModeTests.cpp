#include "KorvaneCore/cleaning/CleanupResult.h"
#include "KorvaneCore/cleaning/DeletionMode.h"
#include "KorvaneCore/platform/UserDefaults.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace korvane;
using namespace korvane::testing;

namespace {

TEST(DeletionMode, asksAndSaysWhatItWillMean) {
    using enum DeletionMode;
    EXPECT_EQ(actionTitle(trash), "Move to Bin");
    EXPECT_EQ(confirmationQuestion(trash, 1, "item"), "Move 1 item to the Bin?");
    EXPECT_EQ(confirmationQuestion(trash, 0, "item"), "Move 0 items to the Bin?");
    EXPECT_EQ(confirmationQuestion(permanent, 12, "file"), "Delete 12 files permanently?");
    EXPECT_EQ(consequence(trash, 0),
              "They stay on your disk in the Bin, so this frees nothing yet - emptying the Bin is "
              "what frees the space. You can put anything back from there in the meantime.");
    EXPECT_EQ(consequence(trash, 1'200'000'000),
              "They stay on your disk in the Bin, so this frees nothing yet - emptying the Bin is "
              "what frees the 1.2 GB. You can put anything back from there in the meantime.");
    EXPECT_EQ(consequence(permanent, 0), "This cannot be undone.");
    EXPECT_EQ(consequence(permanent, 1), "This frees 1 byte immediately and cannot be undone.");
}

TEST(DeletionPreference, meansTheBinUnlessItSaysPermanentExactly) {
    const TemporaryFolder folder;
    UserDefaults defaults(folder.at("Korvane/defaults.json"));
    EXPECT_EQ(DeletionPreference::current(defaults), DeletionMode::trash) << "no file";
    for (const char* value : {R"("Permanent")", R"("trash")", R"("permanent ")", "true", "null"}) {
        folder.makeFile("Korvane/defaults.json",
                        std::string(R"({"korvane.deletionMode":)") + value + "}");
        EXPECT_EQ(DeletionPreference::current(defaults), DeletionMode::trash) << value;
    }
    DeletionPreference::setCurrent(defaults, DeletionMode::permanent);
    EXPECT_EQ(DeletionPreference::current(UserDefaults(defaults.fileURL())),
              DeletionMode::permanent);
    EXPECT_EQ(defaults.string("korvane.deletionMode"), "permanent");
}

TEST(CleanupSkip, namesTheFolderThatTookItAlongWithoutItsControlCharacters) {
    using enum CleanupSkip::Reason::Case;
    EXPECT_EQ(description({removedWithParent, FileURL("/a/b\nc")}), "removed with b\\nc");
    EXPECT_EQ(description({duplicateOfEarlierItem, {}}), "listed twice - handled once");
    EXPECT_EQ(description({alreadyGone, {}}), "already gone before Korvane reached it");
}

} // namespace
