#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/PropertyList.h"
#include "KorvaneCore/platform/SteamLibrary.h"
#include "KorvaneCore/platform/linux/DesktopEntry.h"
#include "KorvaneCore/platform/linux/LinuxSoftwareInventory.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdio>
#include <map>

#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Pair;
using testing::TemporaryFolder;
using ::testing::UnorderedElementsAre;
using Kind = InstalledApplication::Kind;

// As the system's own tools write it: five members, an array with a dictionary among them.
const std::string binaryList(
    "bplist00\xD5\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0C_\x10\x12\x43\x46\x42undleIdenti"
    "fier\x5C\x43\x46\x42undleName_\x10\x0F\x43\x46\x42undleVersion_\x10\x15\x43\x46\x42u"
    "ndleDocumentTypes_\x10\x12\x43\x46\x42undleExecutable_\x10\x0F\x63om.example.Appg"
    "\x00\xDC\x00\x62\x00\x65\x00r\x00 \xD8=\xDE\x00\x10\x07\xA1\x0A\xD1\x01\x0BUinner_"
    "\x10\x1A\x41 longer name than fifteen\x08\x13(5G_t\x86\x95\x97\x99\x9C\xA2\x00\x00"
    "\x00\x00\x00\x00\x01\x01\x00\x00\x00\x00\x00\x00\x00\x0D\x00\x00\x00\x00\x00\x00\x00"
    "\x00\x00\x00\x00\x00\x00\x00\x00\xBF",
    236);

std::string xmlList(const std::string& members) {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Vendor//DTD PLIST 1.0//EN" "http://example.com/PropertyList-1.0.dtd">
<plist version="1.0"><dict>)" +
           members + "</dict></plist>";
}

TEST(PropertyList, readsTheOutermostTextsOfBothForms) {
    EXPECT_THAT(propertyListTexts(binaryList),
                UnorderedElementsAre(Pair("CFBundleIdentifier", "com.example.App"),
                                     Pair("CFBundleName", "Über 😀"),
                                     Pair("CFBundleExecutable", "A longer name than fifteen")));
    const std::map<std::string, std::string> expected{{"id", "com.example.App"}};
    const std::pair<const char*, std::string> documents[] = {
        {"plain", "<key>id</key>\n\t<string>com.example.App</string>"},
        {"entities and sections",
         "<key>i&#100;</key><string>com&#x2E;<![CDATA[example]]>.App</string>"},
        {"a comment with tags", "<!-- <key>id</key><string>no</string> --><key>id</key>"
                                "<string>com.example.App</string>"},
        {"the same key deeper",
         "<key>types</key><array><dict><key>id</key><string>no</string></dict>"
         "</array><key>id</key><string>com.example.App</string>"},
        {"a value that is no text",
         "<key>other</key><true/><key>id</key>"
         "<string>com.example.App</string><key>n</key><integer>1</integer>"},
        {"a text without a key", "<string>no</string><key>id</key><string>com.example.App</string>"
                                 "<string>no</string>"},
        {"twice", "<key>id</key><string>com.example.App</string><key>id</key><string>no</string>"},
    };
    for (const auto& [name, members] : documents) {
        EXPECT_EQ(propertyListTexts(xmlList(members)), expected) << name;
    }
    EXPECT_EQ(propertyListTexts(xmlList("<key>a</key><string>&lt;&amp;&gt; &unknown;</string>")),
              (std::map<std::string, std::string>{{"a", "<&> "}}));
}

TEST(PropertyList, survivesAnyDamage) {
    std::vector<std::string> documents{"", "<", "<>", "<!", "<![CDATA[", "&", "bplist00", "text"};
    const std::string xml = xmlList("<key>a</key><string>b&#x41;</string><array><string/></array>");
    for (const std::string& whole : {binaryList, xml}) {
        for (std::size_t i = 0; i < whole.size(); ++i) {
            documents.push_back(whole.substr(0, i));
            for (const char byte : {'\x00', '\x7F', '\xFF', '<', '\x5F'}) {
                documents.push_back(whole);
                documents.back()[i] = byte;
            }
        }
    }
    documents.push_back(xmlList(std::string(200'000, '<')));
    std::string deep;
    for (int i = 0; i < 100'000; ++i) {
        deep += "<array>";
    }
    documents.push_back(xmlList(deep));
    for (const std::string& document : documents) {
        for (const auto& [key, text] : propertyListTexts(document)) {
            EXPECT_LE(key.size() + text.size(), document.size());
        }
    }
}

TEST(SteamLibrary, readsNestedTexts) {
    EXPECT_THAT(steamTexts("\"State\" { \"name\" \"A \\\"B\\\\ C\" // \"no\" \"no\"\n"
                           "\"inner\" { \"name\" \"deeper\" } \"odd\" } } \"k\" \"v\" \"cut"),
                ElementsAre(SteamText{1, "name", "A \"B\\ C"}, SteamText{2, "name", "deeper"},
                            SteamText{0, "k", "v"}));
    EXPECT_THAT(steamTexts("// no end"), IsEmpty());
}

TEST(DesktopEntry, tellsTheNamesOfAnApplication) {
    const DesktopEntry entry =
        parseDesktopEntry("# comment\r\n[Desktop Entry]\r\nName = Editor\r\n"
                          "Name[de]=Bearbeiter\nIcon=/icons/editor-icon\n"
                          "Exec=env A=b \"/opt/My Editor/edit\\ or\" --new %U\n"
                          "StartupWMClass=EditorWindow\nNoDisplay=true\n"
                          "broken line\n[Desktop Action new]\nName=New\n");
    EXPECT_EQ(entry.name, "Editor");
    EXPECT_FALSE(entry.isPackaged);
    EXPECT_THAT(entry.aliases, ElementsAre("Bearbeiter", "editor-icon", "edit or", "EditorWindow"));
    EXPECT_EQ(parseDesktopEntry("Name=outside a group"), DesktopEntry{});
    EXPECT_TRUE(parseDesktopEntry("[Desktop Entry]\nX-Flatpak=org.a.B").isPackaged);
    EXPECT_TRUE(parseDesktopEntry("[Desktop Entry]\nX-SnapInstanceName=b").isPackaged);
}

/// One of each place in a folder of its own.
class LinuxSoftwareInventoryTests : public ::testing::Test {
  protected:
    void makeEntry(const std::string& file, const std::string& lines) const {
        root_.makeFile(file, "[Desktop Entry]\n" + lines);
    }
    [[nodiscard]] SoftwareListing read() const {
        return LinuxSoftwareInventory({.desktopEntries = {root_.at("user"), root_.at("shared")},
                                       .packages = {root_.at("packages")},
                                       .applications = {root_.at("Applications")},
                                       .steam = {root_.at("steam"), root_.at("steam-link")}})
            .read();
    }
    /// "identifier|name" of each.
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> texts;
        for (const InstalledApplication& application : read().applications) {
            texts.push_back(application.identifier + "|" + application.name);
        }
        return texts;
    }

    TemporaryFolder root_;
};

TEST_F(LinuxSoftwareInventoryTests, readsEntriesOfAllFoldersAndTheirSubfolders) {
    makeEntry("user/org.a.One.desktop", "Name=Mine\nHidden=true\nExec=one-user");
    makeEntry("shared/org.a.One.desktop", "Name=Theirs\nExec=/usr/bin/one");
    makeEntry("shared/kde/two.desktop", "Name=Two");
    makeEntry("shared/packed.desktop", "Name=Packed\nX-Flatpak=org.p.Packed");
    root_.makeFile("shared/bad.desktop", "\xFF\xFE\x00junk");
    root_.makeFile("shared/mimeinfo.cache");
    root_.makeLink("shared/dangling.desktop", "nowhere");
    root_.makeLink("shared/kde/loop", "..");
    const SoftwareListing listing = read();
    EXPECT_TRUE(listing.isComplete);
    EXPECT_THAT(names(), ElementsAre("org.a.One|Mine", "bad|bad", "dangling|dangling",
                                     "kde-two|Two", "packed|Packed"));
    const InstalledApplication& one = listing.applications.front();
    EXPECT_EQ(one.location, root_.at("user/org.a.One.desktop"));
    EXPECT_EQ(one.kind, Kind::desktopEntry);
    EXPECT_THAT(one.aliases, ElementsAre("one-user", "Theirs", "one"));
    EXPECT_EQ(listing.applications.back().kind, Kind::managed);
}

TEST_F(LinuxSoftwareInventoryTests, addsPackagesThatNoEntryStandsFor) {
    makeEntry("shared/shown_shown.desktop", "Name=Shown\nX-SnapInstanceName=shown");
    root_.makeFolder("packages/shown");
    root_.makeFolder("packages/org.a.Quiet/current");
    root_.makeFolder("packages/bin");
    root_.makeFile("packages/README");
    EXPECT_THAT(names(), ElementsAre("shown_shown|Shown", "org.a.Quiet|org.a.Quiet"));
}

TEST_F(LinuxSoftwareInventoryTests, readsBundlesAndAppImages) {
    root_.makeFile("Applications/Binary.app/Contents/Info.plist", binaryList);
    root_.makeFile("Applications/Vendor/Xml.app/Contents/Info.plist",
                   xmlList("<key>CFBundleIdentifier</key><string>com.example.Xml</string>"
                           "<key>CFBundleDisplayName</key><string>Xml Shown</string>"));
    root_.makeFile("Applications/Vendor/Xml.app/Contents/PlugIns/Share.appex/Contents/Info.plist",
                   xmlList("<key>CFBundleIdentifier</key><string>com.other.Share</string>"));
    root_.makeFile("Applications/Phone.app/WrappedBundle/Info.plist",
                   xmlList("<key>CFBundleIdentifier</key><string>com.example.Phone</string>"));
    root_.makeFile("Applications/Damaged.app/Contents/Info.plist", "not a list");
    root_.makeFile("Applications/Tool-1.2-x86_64.AppImage");
    root_.makeFile("Applications/notes.txt");
    root_.makeLink("Applications/Linked.app", "Binary.app");
    root_.makeLink("Applications/Vendor/up", "..");
    root_.makeLink("Applications/Loop.app", "Loop.app");
    EXPECT_TRUE(read().isComplete);
    EXPECT_THAT(names(),
                ElementsAre("com.example.App|Binary", "|Damaged", "com.example.App|Linked", "|Loop",
                            "com.example.Phone|Phone", "|Tool", "com.example.Xml|Xml"));
    const auto has = [](Kind kind, const char* alias) {
        return Contains(AllOf(Field(&InstalledApplication::kind, kind),
                              Field(&InstalledApplication::aliases, Contains(alias))));
    };
    const auto applications = read().applications;
    EXPECT_THAT(applications, has(Kind::bundle, "Xml Shown"));
    EXPECT_THAT(applications, has(Kind::bundle, "com.other.Share"));
    EXPECT_THAT(applications, has(Kind::appImage, "Tool-1.2-x86_64"));
    EXPECT_EQ(applications.front().executable, "A longer name than fifteen");
}

TEST_F(LinuxSoftwareInventoryTests, readsGamesOfAllLibrariesOnce) {
    const auto game = [&](const std::string& file, const std::string& name) {
        root_.makeFile(file, "\"AppState\"\n{\n\t\"appid\"\t\"7\"\n\t\"name\"\t\"" + name +
                                 "\"\n\t\"installdir\"\t\"dir of " + name +
                                 "\"\n\t\"UserConfig\" { \"name\" \"no\" }\n}\n");
    };
    game("steam/steamapps/appmanifest_7.acf", "First");
    game("old/SteamApps/appmanifest_8.acf", "Old");
    game("new/steamapps/appmanifest_9.acf", "New");
    root_.makeFile("new/steamapps/appmanifest_10.acf.tmp", "\"AppState\" { \"name\" \"no\" }");
    root_.makeFile("new/steamapps/appmanifest_11.acf", "cut \"");
    root_.makeLink("steam-link", "steam");
    root_.makeFile("steam/steamapps/libraryfolders.vdf",
                   "\"libraryfolders\" { \"1\" \"" + root_.at("old").path() +
                       "\" \"2\" { \"path\" \"" + root_.at("new").path() +
                       "\" \"apps\" { \"9\" \"1\" } } \"label\" \"/no\" }");
    EXPECT_THAT(names(), ElementsAre("|First", "|Old", "|New"));
    EXPECT_THAT(read().applications[1].aliases, ElementsAre("dir of Old"));
    EXPECT_TRUE(read().isComplete);
    ASSERT_EQ(rename(root_.at("old").path().c_str(), root_.at("gone").path().c_str()), 0);
    EXPECT_FALSE(read().isComplete) << "a library on a drive that is away";
}

TEST_F(LinuxSoftwareInventoryTests, saysWhenItCouldNotReadEverything) {
    makeEntry("shared/one.desktop", "Name=One");
    EXPECT_TRUE(read().isComplete);
    const auto cancellation = Task::makeCancellation();
    Task::cancel(*cancellation);
    {
        const Task::Scope scope(cancellation);
        EXPECT_FALSE(read().isComplete);
    }
    const FileURL queue = root_.at("shared/queue.desktop");
    ASSERT_EQ(mkfifo(queue.path().c_str(), 0600), 0);
    EXPECT_FALSE(read().isComplete);
    unlink(queue.path().c_str());
    root_.makeFileOfSize("Applications/Large.app/Contents/Info.plist", 2UL * 1024 * 1024);
    EXPECT_FALSE(read().isComplete);
}

TEST_F(LinuxSoftwareInventoryTests, saysWhenAFolderIsBarred) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "the superuser may read every folder";
    }
    makeEntry("shared/one.desktop", "Name=One");
    makeEntry("shared/closed/two.desktop", "Name=Two");
    ASSERT_EQ(chmod(root_.at("shared/closed").path().c_str(), 0), 0);
    EXPECT_FALSE(read().isComplete);
    EXPECT_THAT(names(), ElementsAre("one|One"));
}

TEST(LinuxSoftwareRoots, namesTheUsersOwnFoldersFirstAndTheSharedOnesAlways) {
    const LinuxSoftwareRoots roots = LinuxSoftwareRoots::standard(FileURL("/home/ann"));
    EXPECT_THAT(roots.desktopEntries,
                IsSupersetOf({FileURL("/home/ann/.local/share/applications"),
                              FileURL("/usr/share/applications"),
                              FileURL("/var/lib/snapd/desktop/applications")}));
    EXPECT_EQ(roots.applications.front(), FileURL("/home/ann/Applications"));
    EXPECT_THAT(roots.steam, Contains(FileURL("/home/ann/Library/Application Support/Steam")));
}

} // namespace
} // namespace korvane
