#pragma once

#include "Korvane/updater/AppUpdater.h"
#include "Korvane/updater/UpdateSentences.h"
#include "KorvaneCore/foundation/Hashing.h"
#include "KorvaneCore/foundation/Json.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/updater/HTTPSServer.h"
#include "tests/updater/ReleaseArchive.h"

#include <map>

#include <gtest/gtest.h>

namespace korvane::testing {

/// Version 1.0 of the app in a folder, and a server that offers what a test publishes.
class UpdaterTest : public ::testing::Test {
  protected:
    UpdaterTest();

    /// A signed release.
    [[nodiscard]] ReleaseArchive release(const std::string& version) const;
    /// Puts an image and the feed that announces it on the server.
    void publish(const std::string& image, const std::string& version = "2.0",
                 const std::string& name = "Korvane.tar.gz");
    void answer(const std::string& path, HTTPSServer::Answer given);
    void answerFeed(const std::string& body) { answer("/korvane/appcast.json", {body}); }

    [[nodiscard]] UpdaterConfiguration configuration() const;
    /// Checks, and installs what is offered; the phase that it ends in.
    UpdatePhase update();
    UpdatePhase check() const;
    /// What stands in the way of an update's having done nothing: empty when nothing does.
    [[nodiscard]] std::string traces() const;
    [[nodiscard]] std::string runningProgram() const {
        return folder.content("apps/Korvane.app/Contents/Linux/bin/korvane");
    }

    static constexpr const char* team = "TEAM123456";
    TemporaryFolder folder;
    const TestAuthority authority;
    const Credential signer = authority.issue({{team}, "codeSigning"});
    std::vector<std::string> started; ///< scripts that were to outlive the program
    std::vector<FileURL> revealed;
    std::vector<UpdatePhase::Kind> phases;
    AppUpdater::System system;
    std::mutex answersLock;
    std::map<std::string, HTTPSServer::Answer> answers;
    HTTPSServer server;
};

} // namespace korvane::testing
