#include "tests/support/FaultInjection.h"
#include "tests/support/Sandbox.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane::testing {

namespace {

/// Swaps again and again, each time with one system call failing or the process killed at it.
class BundleSwapFaults : public FaultInjectionTest {
  protected:
    void makeWorld() const {
        std::filesystem::remove_all(folder.at("apps").path());
        std::filesystem::remove_all(folder.at("tmp").path());
        for (const char* name : {"/Contents/a", "/Contents/b/c", "/Contents/b/d"}) {
            folder.makeFile(std::string("apps/Korvane.app") + name, "old");
            folder.makeFile(std::string("tmp/Korvane.app") + name, "new");
        }
    }

    int swap(const std::string& fault, const std::vector<std::string>& manner) const {
        std::vector<std::string> command{"strace",
                                         "-o",
                                         folder.at("trace").path(),
                                         "-e",
                                         fault.find(':') == std::string::npos ? "trace=" + fault
                                                                              : "inject=" + fault,
                                         KORVANE_BUNDLE_SWAP_TOOL,
                                         folder.at("apps/Korvane.app").path(),
                                         folder.at("tmp/Korvane.app").path()};
        command.insert(command.end(), manner.begin(), manner.end());
        return runProgram(command);
    }

    std::size_t occasions(const std::string& call, const std::vector<std::string>& manner) const {
        makeWorld();
        EXPECT_EQ(swap(call, manner), 0) << "fails without a fault";
        std::ifstream trace(folder.at("trace").path());
        std::size_t count = 0;
        for (std::string line; std::getline(trace, line);) {
            count += line.starts_with(call + "(") ? 1 : 0;
        }
        return count;
    }

    /// "old" or "new" for a whole app, else what is wrong with it.
    std::string appAt(const std::string& name) const {
        std::string content;
        for (const char* file : {"/Contents/a", "/Contents/b/c", "/Contents/b/d"}) {
            if (!folder.exists(name + file)) {
                return "damaged";
            }
            content += folder.content(name + file);
        }
        return content == "oldoldold" ? "old" : content == "newnewnew" ? "new" : "mixed";
    }

    TemporaryFolder folder{quickPlace()};
};

TEST_F(BundleSwapFaults, leaveAnAppThatStarts) {
    std::size_t turns = 0;
    for (const auto& manner : std::vector<std::vector<std::string>>{{}, {"two-steps"}}) {
        for (const char* call :
             {"renameat2", "rename", "syncfs", "flock", "unlinkat", "openat", "newfstatat"}) {
            const std::size_t count = occasions(call, manner);
            EXPECT_EQ(appAt("apps/Korvane.app"), "new");
            EXPECT_THAT(folder.listing("apps"), ::testing::SizeIs(6)) << "something is left";
            for (std::size_t when = 1; when <= count; ++when, ++turns) {
                for (const char* fault : {":error=EIO", ":signal=KILL"}) {
                    makeWorld();
                    const std::string injected =
                        call + std::string(fault) + ":when=" + std::to_string(when);
                    const int status = swap(injected, manner);
                    std::string app = appAt("apps/Korvane.app");
                    if (app == "damaged" && !manner.empty()) {
                        // Between its two steps the old app has another name.
                        for (const auto& entry :
                             std::filesystem::directory_iterator(folder.at("apps").path())) {
                            app = std::max(app, appAt("apps/" + entry.path().filename().string()));
                        }
                    }
                    EXPECT_THAT(app, ::testing::AnyOf("old", "new")) << injected;
                    EXPECT_TRUE(status != 0 || app == "new") << injected;
                }
            }
        }
    }
    EXPECT_GT(turns, 20U) << "hardly anything was made to fail";
}

} // namespace

} // namespace korvane::testing
