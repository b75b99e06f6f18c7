#include "Korvane/updater/ArchiveExtraction.h"
#include "Korvane/updater/UpdateError.h"
#include "tests/support/FakeProcessLauncher.h"
#include "tests/updater/UpdaterFixture.h"

#include <fstream>

#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>

namespace korvane::testing {

namespace {

using Kind = UpdatePhase::Kind;
namespace S = UpdateSentences;
using Entries = std::vector<ArchiveEntry>;

constexpr const char* program = "Contents/Linux/bin/korvane";
constexpr const char* manifest = "Contents/_CodeSignature/manifest";
constexpr const char* signature = "Contents/_CodeSignature/manifest.cms";

TEST_F(UpdaterTest, installsASignedReleaseAndStartsIt) {
    ReleaseArchive next = release("2.0");
    Entries entries = next.entries();
    publish(tarArchive(entries));
    folder.makeFile("apps/.Korvane-update-6F2C1B3A-0D4E-4F5A-8B6C-7D8E9FA0B1C2.app/left", "old");
    folder.makeFile("apps/.Korvane-update-mine.app/kept", "not an update's");

    EXPECT_EQ(update().kind, Kind::relaunching);

    for (const auto& [path, content] : next.files) {
        EXPECT_EQ(folder.content("apps/Korvane.app/" + path), content);
    }
    EXPECT_EQ(access(folder.at("apps/Korvane.app/" + std::string(program)).path().c_str(), X_OK),
              0);
    EXPECT_THAT(folder.listing("tmp"), ::testing::IsEmpty());
    EXPECT_TRUE(folder.exists("apps/.Korvane-update-mine.app/kept"));
    EXPECT_EQ(folder.listing("apps").size(), folder.listing("apps/Korvane.app").size() + 3);
    EXPECT_EQ(started, std::vector<std::string>{
                           "while kill -0 " + std::to_string(getpid()) +
                           " 2>/dev/null; do sleep 0.2; done; '" +
                           folder.at("apps/Korvane.app/" + std::string(program)).path() + "'"});
    phases.erase(std::unique(phases.begin(), phases.end()), phases.end());
    EXPECT_THAT(phases,
                ::testing::ElementsAre(Kind::checking, Kind::available, Kind::downloading,
                                       Kind::verifying, Kind::installing, Kind::relaunching));
}

TEST_F(UpdaterTest, refusesEveryHostileArchive) {
    const Entries sound = release("2.0").entries();
    const auto with = [&](ArchiveEntry entry) {
        Entries entries = sound;
        entries.push_back(std::move(entry));
        return tarArchive(entries);
    };
    const std::string whole = tarArchive(sound);
    const std::string top = "Korvane.app/Contents/";
    const std::string elsewhere = folder.at("escaped").path();
    const struct {
        const char* name;
        std::string image;
        std::string message = S::unopenedImage;
    } rows[] = {
        {"no archive", "hello"},
        {"empty", ""},
        {"cut off", whole.substr(0, whole.size() / 2 + 7)},
        {"parent folder", with({"Korvane.app/../../escaped", "x"})},
        {"parent folder at the start", with({"../escaped", "x"})},
        {"absolute name", with({elsewhere.substr(0, 99), "x"})},
        {"absolute link", with({top + "link", "", '2', "/etc"})},
        {"link out", with({top + "link", "", '2', "../../../escaped"})},
        {"link out by a detour", with({top + "link", "", '2', "Linux/../../../../escaped"})},
        {"link to the top", with({top + "link", "", '2', "../.."})},
        {"hard link", with({top + "link", "", '1', "Korvane.app/Contents/Info.plist"})},
        {"device", with({top + "device", "", '3'})},
        {"pipe", with({top + "pipe", "", '6'})},
        {"the same name twice", with({top + "Info.plist", "x"})},
        {"the same name in capitals", with({top + "INFO.PLIST", "x"})},
        {"the same folder twice", with({top, "", '5'})},
        {"a file as a folder", with({top + "Info.plist/x", "x"})},
        {"a folder unannounced", with({top + "Frameworks/x", "x"})},
        {"a name of two lines", with({top + "a\nb", "x"})},
        {"a name beyond ASCII", with({top + "\xC3\xA9", "x"})},
        {"a backslash", with({top + "..\\x", "x"})},
        {"too large a file",
         tarArchive({{"Korvane.app/", "", '5'}}) + std::string(2UL * 1024UL * 1024UL, 'x'),
         S::downloadFailed},
        {"nothing", tarArchive({}), S::emptyImage},
        {"another app", tarArchive({{"Other.app/", "", '5'}}), S::emptyImage},
        {"a link for the app",
         tarArchive({{"Real.app/", "", '5'}, {"Korvane.app", "", '2', "Real.app"}}), S::emptyImage},
        {"no Info.plist", tarArchive({{"Korvane.app/", "", '5'}}), S::wrongVersion("2.0")},
    };
    for (const auto& row : rows) {
        publish(row.image);
        const UpdatePhase phase = update();
        EXPECT_EQ(phase.kind, Kind::failed) << row.name;
        EXPECT_EQ(phase.message, row.message) << row.name;
        EXPECT_EQ(traces(), "") << row.name;
        EXPECT_FALSE(folder.exists("escaped")) << row.name;
    }
}

TEST_F(UpdaterTest, refusesEveryOtherSignature) {
    const TestAuthority stranger;
    const auto signedBy = [&](const Credential& credential) {
        ReleaseArchive made("2.0");
        made.sign(credential);
        return made;
    };
    const auto changed = [&](const std::string& path, const std::string& content) {
        ReleaseArchive made = release("2.0");
        made.files[path] = content;
        return made;
    };
    const auto without = [&](const std::string& path) {
        ReleaseArchive made = release("2.0");
        made.files.erase(path);
        return made;
    };
    // Its program was changed, and the manifest with it.
    ReleaseArchive rewritten("2.0");
    rewritten.files[program] = "#!/bin/sh\nevil\n";
    const std::string text = rewritten.manifest();
    rewritten.files[manifest] = text;
    rewritten.files[signature] = release("2.0").files.at(signature);
    ReleaseArchive attached = release("2.0");
    attached.files[signature] = signedMessage(attached.files.at(manifest), signer, true);
    Credential selfMade = authority.issue({{team}, "codeSigning"});
    selfMade.certificate = stranger.issue({{team}, "codeSigning"}).certificate;
    const struct {
        const char* name;
        ReleaseArchive made;
    } rows[] = {
        {"a changed file", changed(program, "#!/bin/sh\nevil\n")},
        {"an extra file", changed("Contents/Linux/bin/extra", "x")},
        {"an extra file beside the signature", changed("Contents/_CodeSignature/extra", "x")},
        {"a missing file", without(program)},
        {"no manifest", without(manifest)},
        {"no signature", without(signature)},
        {"no CMS", changed(signature, "garbage")},
        {"a manifest rewritten", rewritten},
        {"an attached signature", attached},
        {"another team", signedBy(authority.issue({{"TEAM654321"}, "codeSigning"}))},
        {"no team", signedBy(authority.issue({{}, "codeSigning"}))},
        {"two teams", signedBy(authority.issue({{"TEAM654321", team}, "codeSigning"}))},
        {"not for signing code", signedBy(authority.issue({{team}, "emailProtection"}))},
        {"expired", signedBy(authority.issue({{team}, "codeSigning", "", -1}))},
        {"another root", signedBy(stranger.issue({{team}, "codeSigning"}))},
    };
    for (const auto& row : rows) {
        publish(tarArchive(row.made.entries()));
        EXPECT_EQ(update().message, S::wrongSignature) << row.name;
        EXPECT_EQ(traces(), "") << row.name;
    }
    folder.makeFile("root.pem", authority.rootPEM() + stranger.rootPEM());
    publish(tarArchive(signedBy(stranger.issue({{team}, "codeSigning"})).entries()));
    EXPECT_EQ(update().kind, Kind::relaunching) << "a second root is as good";
}

TEST_F(UpdaterTest, failsInTheOrderOfItsChecks) {
    // Each is wrong in one way more than the next, and tells the first.
    ReleaseArchive made("3.0");
    publish(tarArchive(made.entries()));
    Json feed = Json::parse(answers["/korvane/appcast.json"].body);
    feed["sha256"] = std::string(64, '0');
    answerFeed(feed.dump());
    EXPECT_EQ(update().message, S::wrongChecksum);
    publish(tarArchive(made.entries()));
    EXPECT_EQ(update().message, S::wrongVersion("2.0"));
    UpdaterConfiguration rootless = configuration();
    rootless.requirement.rootCertificates = folder.at("nowhere.pem");
    publish(tarArchive(made.entries()), "3.0");
    AppUpdater updater(rootless, system);
    updater.check(true);
    updater.install(*updater.phase().release);
    EXPECT_EQ(updater.phase().message, S::unpreparedCheck);
    EXPECT_EQ(update().message, S::wrongSignature);
    made.sign(signer);
    Entries entries = made.entries();
    for (ArchiveEntry& entry : entries) {
        entry.mode = 0644;
    }
    publish(tarArchive(entries), "3.0");
    EXPECT_EQ(update().message, S::emptyImage) << "nobody may run it";
    ArchiveEntry outward{"Korvane.app/Contents/folder", "", '2', "Linux"};
    entries.push_back(outward);
    publish(tarArchive(entries), "3.0");
    EXPECT_EQ(update().message, S::unexaminedApp) << "a link to a folder";
    EXPECT_EQ(traces(), "");
}

TEST_F(UpdaterTest, leavesNothingOfADownloadThatFails) {
    const std::string image = tarArchive(release("2.0").entries());
    const struct {
        const char* name;
        HTTPSServer::Answer given;
    } rows[] = {
        {"not found", {image, 404}},
        {"cut off", {image, 200, "", image.size() + 1}},
        {"redirected away", {"", 302, "https://127.0.0.1/"}},
        {"announced too large", {image, 200, "", 1024UL * 1024UL + 1}},
    };
    for (const auto& row : rows) {
        publish(image);
        answer("/korvane/Korvane.tar.gz", row.given);
        EXPECT_EQ(update().message, S::downloadFailed) << row.name;
        EXPECT_EQ(traces(), "") << row.name;
    }
}

TEST_F(UpdaterTest, boundsWhatAnArchiveUnpacksTo) {
    const Entries entries = release("2.0").entries();
    folder.makeFile("image", tarArchive(entries));
    for (const ExtractionLimits limits : {ExtractionLimits{100, 100}, ExtractionLimits{10000, 3}}) {
        folder.makeFolder("out");
        EXPECT_THROW(extractArchive(folder.at("image"), folder.at("out"), limits), UpdateError);
        std::filesystem::remove_all(folder.at("out").path());
    }
}

TEST_F(UpdaterTest, keepsTheOldAppWhenTheNewOneCannotTakeItsPlace) {
    publish(tarArchive(release("2.0").entries()));
    system.exchange = [](const FileURL&, const FileURL&) { return EACCES; };
    EXPECT_THAT(update().message,
                ::testing::StartsWith("The update could not be installed: Could not replace"));
    EXPECT_EQ(traces(), "");
}

TEST_F(UpdaterTest, mountsADiskImageAndLetsItGo) {
    publish("image", "2.0", "Korvane.dmg");
    bool isMountable = false;
    FakeProcessLauncher launcher([&](const ProcessRequest& request) {
        if (request.arguments.front() == "attach" && isMountable) {
            for (const auto& [path, content] : release("2.0").files) {
                const std::string file = request.arguments[3] + "/Korvane.app/" + path;
                std::filesystem::create_directories(
                    FileURL(file).deletingLastPathComponent().path());
                std::ofstream(file) << content;
                chmod(file.c_str(), 0755);
            }
        }
        ProcessOutcome outcome = FakeProcessLauncher::saying("");
        outcome.exitStatus = isMountable ? 0 : 1;
        return outcome;
    });
    AppUpdater::System mounting{FileManager::standard(), launcher, exchangeItems, system.start,
                                system.reveal};
    for (const bool canMount : {false, true}) {
        isMountable = canMount;
        AppUpdater updater(configuration(), mounting);
        updater.check(true);
        updater.install(*updater.phase().release);
        EXPECT_EQ(updater.phase().message, canMount ? "" : S::unopenedImage);
    }
    ASSERT_EQ(launcher.requests.size(), 3U);
    const auto& attach = launcher.requests[1];
    EXPECT_EQ(attach.executable, "/usr/bin/hdiutil");
    EXPECT_THAT(attach.arguments,
                ::testing::ElementsAre("attach", ::testing::EndsWith("/Korvane-2.0.dmg"),
                                       "-mountpoint", ::testing::HasSubstr("/korvane-update-"),
                                       "-nobrowse", "-noautoopen", "-readonly", "-quiet"));
    EXPECT_THAT(launcher.requests[2].arguments,
                ::testing::ElementsAre("detach", attach.arguments[3], "-quiet"));
    EXPECT_EQ(runningProgram(), release("2.0").files.at(program));
    EXPECT_THAT(folder.listing("tmp"), ::testing::IsEmpty());
}

TEST_F(UpdaterTest, needsABundleToInstallInto) {
    publish(tarArchive(release("2.0").entries()));
    UpdaterConfiguration loose = configuration();
    loose.bundle = AppBundle::holding(FileURL("/usr/bin/korvane"));
    AppUpdater updater(loose, system);
    updater.check(true);
    updater.install(*updater.phase().release);
    EXPECT_EQ(updater.phase().message, S::noBundle);
    EXPECT_EQ(server.requests().size(), 1U) << "downloaded for nothing";
}

} // namespace

} // namespace korvane::testing
