#pragma once

#include "KorvaneCore/foundation/Json.h"
#include "KorvaneCore/platform/ProcessLauncher.h"
#include "tests/support/TemporaryFolder.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace korvane::testing {

/// Runs the real command with a home of the test's own, and nothing of the caller's environment.
class CommandTest : public ::testing::Test {
  protected:
    struct Run {
        int status = -1;
        std::string output;
        std::string errors;

        [[nodiscard]] Json json() const { return parseJson(output); }
    };

    CommandTest();

    Run korvane(std::vector<std::string> arguments) const;
    /// A shell line in which "$K" is the command, for redirections and signals.
    Run shell(const std::string& script) const;

    /// A Chrome cache of one file of this size below `profile`.
    void makeChromeCache(const std::string& profile, std::size_t bytes) const;
    [[nodiscard]] std::string chrome(const std::string& name) const;

    TemporaryFolder folder;
    FileURL home;
    const std::string chromeRoot = "home/Library/Application Support/Google/Chrome/";
    const std::string trashFiles = "home/.local/share/Trash/files";
};

} // namespace korvane::testing
