#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/scanners/AppFootprintScanner.h"
#include "KorvaneCore/scanners/ApplicationSearch.h"
#include "KorvaneCore/scanners/UninstallerScanner.h"
#include "tests/support/FakeSoftwareInventory.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using testing::bundle;
using ::testing::ElementsAre;
using testing::FakeSoftwareInventory;
using ::testing::IsEmpty;
using testing::TemporaryFolder;
using ::testing::UnorderedElementsAre;
using ::testing::UnorderedElementsAreArray;
using Kind = InstalledApplication::Kind;

const std::string library = "Library/";
const std::string support = library + "Application Support/";

class ApplicationDataTests : public ::testing::Test {
  protected:
    [[nodiscard]] InstalledApplication app(const std::string& identifier,
                                           const std::string& name) const {
        return bundle(home_.at("Applications"), identifier, name);
    }
    /// "path below home | row | category" of each item.
    [[nodiscard]] std::vector<std::string> lines(const ScanResult& result) const {
        std::vector<std::string> texts;
        texts.reserve(result.items.size());
        for (const ScanItem& item : result.items) {
            texts.push_back(item.path().substr(home_.path().size() + 1) + " | " + item.heuristicID +
                            " | " + item.category);
        }
        return texts;
    }
    [[nodiscard]] std::vector<std::string>
    uninstalled(const InstalledApplication& application,
                const std::vector<InstalledApplication>& installed, bool isComplete = true) const {
        return lines(UninstallerScanner(home_.url(), application,
                                        FakeSoftwareInventory::of(installed, isComplete))
                         .scan());
    }
    [[nodiscard]] std::vector<std::string>
    footprint(const std::vector<InstalledApplication>& installed) const {
        return lines(AppFootprintScanner(home_.url(), FakeSoftwareInventory::of(installed)).scan());
    }

    TemporaryFolder home_;
};

TEST_F(ApplicationDataTests, findsTheApplicationAndWhatCarriesItsIdentifier) {
    InstalledApplication tool = app("com.vendor.Tool", "My Tool");
    tool.executable = "mytool";
    const std::vector<std::string> expected{
        "Applications/My Tool.app | uninstall.app-support",
        support + "My Tool | uninstall.app-support",
        support + "com.vendor.Tool | uninstall.app-support",
        support + "com.vendor.tool.helper | uninstall.app-support",
        library + "Preferences/com.vendor.Tool.plist | uninstall.preferences",
        library + "Preferences/com.vendor.Tool.plist.lockfile | uninstall.preferences",
        library + "LaunchAgents/com.vendor.Tool.agent.plist | uninstall.launch-agents",
        support + "CrashReporter/My Tool_AB12-F.plist | uninstall.crash-logs",
        library + "Crashes/mytool-2026-11-01.ips | uninstall.crash-logs",
        library + "Application Scripts/com.vendor.Tool | uninstall.app-scripts",
        library + "Cookies/com.vendor.Tool.binarycookies | uninstall.cookies"};
    std::size_t size = 800'000;
    std::vector<std::string> ordered;
    for (const std::string& line : expected) {
        const std::string path = line.substr(0, line.find(" | "));
        const bool isFile = path.ends_with(".plist") || path.ends_with(".lockfile") ||
                            path.ends_with(".ips") || path.ends_with(".binarycookies");
        home_.makeFileOfSize(isFile ? path : path + "/inside", size);
        ordered.push_back(line + " | Uninstaller");
        size -= 65'536;
    }
    for (const std::string& other :
         {support + "com.vendor.Toolbox/f", support + "com.vendor/f", support + "My Tool 2/f",
          support + "Tool/f", library + "Preferences/com.vendor.plist",
          library + "Preferences/xcom.vendor.Tool.plist", library + "Preferences/My Tool",
          library + "Crashes/My Toolbox_2026.ips", library + "Crashes/mytool-x.ips",
          library + "Crashes/mytool", library + "Caches/com.vendor.Tool/f",
          library + "Containers/com.vendor.Tool/f"}) {
        home_.makeFile(other);
    }
    home_.makeFolder(support + "com.vendor.Tool.empty");
    home_.makeLink(support + "com.vendor.Tool.link", home_.at("Library").path());
    EXPECT_EQ(uninstalled(tool, {tool}), ordered);
}

TEST_F(ApplicationDataTests, leavesWhatOtherApplicationsOwn) {
    const InstalledApplication tool = app("com.vendor.tool", "Tool");
    const InstalledApplication pro = app("com.vendor.tool.Pro", "Tool-A");
    for (const std::string& file :
         {support + "com.vendor.tool/f", support + "com.vendor.tool.pro/f",
          support + "com.vendor.tool.pro.helper/f", support + "com.vendor.tool.helper/f",
          support + "Tool/f", library + "Crashes/Tool-A-2026.ips",
          library + "Crashes/Tool-2026.ips"}) {
        home_.makeFile(file);
    }
    const auto paths = [](std::vector<std::string> texts) {
        for (std::string& text : texts) {
            text.erase(text.find(" | "));
        }
        return texts;
    };
    EXPECT_THAT(paths(uninstalled(tool, {tool, pro})),
                UnorderedElementsAre(support + "com.vendor.tool",
                                     support + "com.vendor.tool.helper", support + "Tool",
                                     library + "Crashes/Tool-2026.ips"));
    EXPECT_THAT(paths(uninstalled(pro, {tool, pro})),
                UnorderedElementsAre(support + "com.vendor.tool.pro",
                                     support + "com.vendor.tool.pro.helper",
                                     library + "Crashes/Tool-A-2026.ips"));
    EXPECT_THAT(paths(uninstalled(tool, {tool}, false)),
                UnorderedElementsAre(support + "com.vendor.tool", support + "Tool",
                                     library + "Crashes/Tool-A-2026.ips",
                                     library + "Crashes/Tool-2026.ips"))
        << "what only begins with the identifier may be another's that is not known";
    InstalledApplication copy = tool;
    copy.location = home_.at("Elsewhere/Tool.app");
    EXPECT_THAT(uninstalled(tool, {tool, copy, pro}), IsEmpty()) << "the copy still uses it";
    home_.makeFolder("Applications/Tool.app");
    copy.location = home_.makeLink("Tool link.app", "Applications/Tool.app");
    EXPECT_EQ(uninstalled(tool, {tool, copy, pro}).size(), 4U) << "a link is no copy";
}

TEST_F(ApplicationDataTests, takesNothingOfTheSystemOrByAVagueIdentifier) {
    for (const std::string& file :
         {library + "Preferences/com.apple.dock.plist", library + "Preferences/com.google.plist",
          library + "Preferences/com.google.Other.plist", library + "Preferences/x.plist",
          library + "Preferences/x.y.plist", support + "com.apple.TCC/f", support + "Dock/f",
          support + "CrashReporter/f", support + "Korvane/Audit/log",
          support + "com.ostrel.korvane/f", support + ".plist"}) {
        home_.makeFile(file);
    }
    for (const char* identifier : {"", ".", "dock", "com", "com.apple", "com.apple.", "com.apple..",
                                   "com.ostrel.korvane", "Library"}) {
        for (const char* name : {"", "Dock", "CrashReporter", "Korvane", "com.apple.TCC"}) {
            const InstalledApplication application = app(identifier, name);
            EXPECT_THAT(uninstalled(application, {application}), IsEmpty()) << identifier << name;
        }
    }
    const InstalledApplication google = app("com.google", "G");
    EXPECT_EQ(uninstalled(google, {google}).size(), 1U);
    const InstalledApplication dock = app("com.apple.dock", "D");
    EXPECT_EQ(uninstalled(dock, {dock}).size(), 1U);
}

TEST_F(ApplicationDataTests, proposesAnApplicationOnlyWhereTheUserMayRemoveIt) {
    const FileURL image = home_.makeFile("Applications/Tool.AppImage");
    const FileURL entry = home_.makeFile(".local/share/applications/tool.desktop");
    const FileURL folder = home_.makeFolder("Applications/Tool.app");
    home_.makeFile("Applications/Tool.app/f");
    home_.makeLink("Applications/Linked.app", "Tool.app");
    const TemporaryFolder outside("/tmp");
    outside.makeFile("Tool.app/f");
    outside.makeFile("tool.desktop");
    const TemporaryFolder managed("/var/tmp");
    managed.makeFile("Tool.app/f");
    struct Case {
        FileURL location;
        Kind kind;
        bool isProposed;
    };
    const Case cases[] = {
        {folder, Kind::bundle, true},
        {outside.at("Tool.app"), Kind::bundle, true},
        {home_.at("Applications/Linked.app"), Kind::bundle, false},
        {managed.at("Tool.app"), Kind::bundle, false},
        {FileURL("/tmp/.." + managed.path() + "/Tool.app"), Kind::bundle, false},
        {image, Kind::appImage, true},
        {entry, Kind::desktopEntry, true},
        {outside.at("tool.desktop"), Kind::desktopEntry, false},
        {home_.at("../../../../../../../../.." + outside.path() + "/tool.desktop"),
         Kind::desktopEntry, false},
        {folder, Kind::managed, false},
        {FileURL(""), Kind::bundle, false},
        {home_.url(), Kind::bundle, false},
    };
    for (const Case& one : cases) {
        const InstalledApplication application{.kind = one.kind, .location = one.location};
        const ScanResult result =
            UninstallerScanner(home_.url(), application, FakeSoftwareInventory::of({application}))
                .scan();
        EXPECT_EQ(result.items.size(), one.isProposed ? 1U : 0U)
            << one.location.path() << " " << static_cast<int>(one.kind);
    }
}

TEST_F(ApplicationDataTests, reportsEveryPlaceAndStopsWhenCancelled) {
    const InstalledApplication tool = app("com.vendor.tool", "Tool\n");
    home_.makeFile("Applications/Tool\n.app/f");
    home_.makeFile(support + "com.vendor.tool/f");
    const auto inventory = FakeSoftwareInventory::of({tool});
    const UninstallerScanner uninstaller(home_.url(), tool, inventory);
    const AppFootprintScanner footprint(home_.url(), inventory);
    EXPECT_EQ(uninstaller.displayName() + footprint.displayName(), "UninstallerApp Footprint");
    const auto messages = [](const ModuleScanner& scanner, const std::string& cancelAt) {
        const auto cancellation = Task::makeCancellation();
        const Task::Scope scope(cancellation);
        std::vector<std::string> texts;
        double last = -1;
        const ScanResult result = scanner.scan([&](const ScanProgress& report) {
            texts.push_back(report.message);
            EXPECT_GT(report.fraction, last) << report.message;
            last = report.fraction.value_or(0);
            if (report.message == cancelAt) {
                Task::cancel(*cancellation);
            }
        });
        EXPECT_EQ(result.scannerID, scanner.id());
        texts.push_back(std::to_string(result.items.size()));
        return texts;
    };
    EXPECT_THAT(messages(uninstaller, ""),
                ElementsAre("Checking Tool\\n…", "Checking Application Support folders…",
                            "Checking Preferences (.plist)…", "Checking LaunchAgents…",
                            "Checking Crash logs…", "Checking Application Scripts…",
                            "Checking Cookies…", "Measuring Tool\\n…", "Done", "2"));
    EXPECT_THAT(messages(uninstaller, "Checking Tool\\n…"), ElementsAre("Checking Tool\\n…", "0"));
    EXPECT_THAT(messages(footprint, "Checking LaunchAgents…"),
                ElementsAre("Checking installed apps…", "Measuring installed apps…",
                            "Checking Application Support folders…",
                            "Checking Preferences (.plist)…", "Checking LaunchAgents…", "2"));
    EXPECT_EQ(messages(footprint, "").back(), "2");
}

TEST_F(ApplicationDataTests, showsTheFootprintOfEachApplicationUnderItsName) {
    const InstalledApplication first = app("com.vendor.first", "First");
    const InstalledApplication second = app("com.vendor.first.second", "Second");
    InstalledApplication copy = first;
    copy.location = home_.at("Copies/First.app");
    InstalledApplication entry = app("first", "First");
    entry.kind = Kind::desktopEntry;
    const InstalledApplication same = app("com.other.same", "Same");
    const InstalledApplication alike = app("com.another.same", "Same");
    home_.makeFileOfSize("Applications/First.app/f", 300'000);
    home_.makeFileOfSize("Copies/First.app/f", 250'000);
    home_.makeFileOfSize(support + "com.vendor.first/f", 200'000);
    home_.makeFileOfSize(support + "com.vendor.first.second.x/f", 100'000);
    home_.makeFileOfSize(support + "Same/f", 50'000);
    const std::string row = " | uninstall.app-support | ";
    EXPECT_THAT(footprint({first, copy, second, entry, same, alike}),
                ElementsAre("Applications/First.app" + row + "First",
                            "Copies/First.app" + row + "First",
                            support + "com.vendor.first" + row + "First",
                            support + "com.vendor.first.second.x" + row + "Second"));
    EXPECT_THAT(footprint({}), IsEmpty());
}

TEST(ApplicationSearch, findsByPathThenIdentifierThenNameThenAlias) {
    const TemporaryFolder folder;
    folder.makeFolder("Editor.app");
    folder.makeLink("Linked.app", "Editor.app");
    std::vector<InstalledApplication> installed{
        bundle(folder.url(), "com.a.Editor", "Editor"),
        bundle(folder.url(), "com.a.Editor", "Linked"),
        bundle(folder.at("other"), "com.b.Editor", "Editor"),
        bundle(folder.url(), "editor", "Plain"), bundle(folder.url(), "com.c.Viewer", "Über")};
    installed[4].aliases = {"viewer", "Linked"};
    const auto inventory = FakeSoftwareInventory::of(installed);
    const std::pair<std::string, std::vector<std::size_t>> cases[] = {
        {folder.at("Editor.app").path(), {0}},
        {folder.path() + "/Editor.app/", {0}},
        {folder.at("Linked.app").path(), {0}},
        {folder.at("Gone.app").path(), {}},
        {"COM.A.EDITOR", {0}},
        {"Editor", {3}},
        {"editor.app", {0, 2}},
        {"Linked", {1}},
        {"u\u0308ber", {4}},
        {"VIEWER", {4}},
        {"edit", {}},
        {"", {}},
    };
    for (const auto& [text, indexes] : cases) {
        std::vector<InstalledApplication> expected;
        for (const std::size_t index : indexes) {
            expected.push_back(installed[index]);
        }
        EXPECT_THAT(findApplications(*inventory, text), UnorderedElementsAreArray(expected))
            << text;
    }
}

} // namespace
} // namespace korvane
