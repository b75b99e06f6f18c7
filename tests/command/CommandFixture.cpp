#include "tests/command/CommandFixture.h"

#include <cstdlib>

namespace korvane::testing {

CommandTest::CommandTest() : home(folder.makeFolder("home")) {
    folder.makeFolder("tmp");
}

CommandTest::Run CommandTest::korvane(std::vector<std::string> arguments) const {
    ProcessRequest request;
    request.executable = "/usr/bin/env";
    request.arguments = {"-i", "PATH=/usr/bin:/bin", "HOME=" + home.path(),
                         "TMPDIR=" + folder.at("tmp").path(), "K=" KORVANE_COMMAND};
    // What a sanitizer was told holds for the command as for the test.
    if (const char* options = std::getenv("TSAN_OPTIONS"); options != nullptr) {
        request.arguments.push_back(std::string("TSAN_OPTIONS=") + options);
    }
    if (arguments.empty() || arguments.front() != "/bin/sh") {
        request.arguments.emplace_back(KORVANE_COMMAND);
    }
    request.arguments.insert(request.arguments.end(), arguments.begin(), arguments.end());
    request.captureErrors = true;
    request.timeLimit = std::chrono::minutes(2);
    const ProcessOutcome outcome = ProcessLauncher::standard().run(request);
    EXPECT_TRUE(outcome.launched);
    EXPECT_FALSE(outcome.timedOut);
    EXPECT_EQ(outcome.signal, 0);
    return {outcome.exitStatus, outcome.output, outcome.errors};
}

CommandTest::Run CommandTest::shell(const std::string& script) const {
    return korvane({"/bin/sh", "-c", script});
}

void CommandTest::makeChromeCache(const std::string& profile, std::size_t bytes) const {
    folder.makeFileOfSize(chromeRoot + profile + "/Cache/data", bytes);
}

std::string CommandTest::chrome(const std::string& name) const {
    return folder.at(chromeRoot + name).path();
}

} // namespace korvane::testing
