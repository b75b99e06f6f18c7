#include "tests/updater/UpdaterFixture.h"

#include <cstdlib>
#include <span>

#include <sys/stat.h>

#include <fmt/format.h>

namespace korvane::testing {

UpdaterTest::UpdaterTest()
    : server(authority.issue({{}, "serverAuth", "DNS:localhost"}), [this](const std::string& path) {
          const std::lock_guard guard(answersLock);
          const auto found = answers.find(path);
          return found == answers.end() ? HTTPSServer::Answer{"nothing", 404} : found->second;
      }) {
    // A proxy of this computer's is none of the tests' business.
    setenv("no_proxy", "*", 1);
    folder.makeFolder("tmp");
    folder.makeFolder("home");
    folder.makeFile("root.pem", authority.rootPEM());
    for (const auto& [path, content] : ReleaseArchive("1.0").files) {
        const FileURL file = folder.makeFile("apps/Korvane.app/" + path, content);
        chmod(file.path().c_str(), 0755);
    }
    system.start = [this](const std::string&, const std::vector<std::string>& arguments) {
        started.push_back(arguments.back());
        return 0;
    };
    system.reveal = [this](const FileURL& file) { revealed.push_back(file); };
}

ReleaseArchive UpdaterTest::release(const std::string& version) const {
    ReleaseArchive made(version);
    made.sign(signer);
    return made;
}

void UpdaterTest::answer(const std::string& path, HTTPSServer::Answer given) {
    const std::lock_guard guard(answersLock);
    answers[path] = std::move(given);
}

void UpdaterTest::publish(const std::string& image, const std::string& version,
                          const std::string& name) {
    SHA256 hash;
    hash.update(std::as_bytes(std::span(image)));
    answer("/korvane/" + name, {image});
    answerFeed(Json{{"version", version},
                    {"url", server.url("/korvane/" + name)},
                    {"sha256", hexText(hash.finish())}}
                   .dump());
}

UpdaterConfiguration UpdaterTest::configuration() const {
    UpdaterConfiguration made;
    made.feedURL = server.url("/korvane/appcast.json");
    made.runningVersion = "1.0";
    made.systemVersion = "6.1.0";
    made.bundle = AppBundle::at(folder.at("apps/Korvane.app"));
    made.requirement = {team, folder.at("root.pem")};
    made.certificates = folder.at("root.pem");
    made.temporary = folder.at("tmp");
    made.downloads = folder.at("home/Downloads");
    made.feedLimits.bytes = 1024L * 1024L;
    made.imageLimits.bytes = 1024L * 1024L;
    return made;
}

UpdatePhase UpdaterTest::check() const {
    AppUpdater updater(configuration());
    updater.check(true);
    return updater.phase();
}

UpdatePhase UpdaterTest::update() {
    AppUpdater updater(configuration(), system,
                       [this](const UpdatePhase& phase) { phases.push_back(phase.kind); });
    updater.check(true);
    if (updater.phase().release) {
        updater.install(*updater.phase().release);
    }
    return updater.phase();
}

std::string UpdaterTest::traces() const {
    std::string found;
    for (const char* place : {"tmp", "home", "apps"}) {
        for (const std::string& name : folder.listing(place)) {
            if (!(std::string(place) == "apps" && name.starts_with("Korvane.app/"))) {
                found += fmt::format("{}/{} is there; ", place, name);
            }
        }
    }
    const auto names = folder.listing("apps/Korvane.app");
    if (runningProgram() != ReleaseArchive("1.0").files.at("Contents/Linux/bin/korvane") ||
        names.size() != 5) {
        found += "the app is another; ";
    }
    return found + (started.empty() ? "" : "something was started; ");
}

} // namespace korvane::testing
