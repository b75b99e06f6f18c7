#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace korvane::testing {

/// Thrown in a sandbox that this machine cannot offer.
class Unavailable : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Runs `work` in a child process, because what it does to the process cannot be undone. Passes
/// when it answers an empty text; skips the test when it throws `Unavailable`.
void expectInChild(const std::function<std::string()>& work);

/// For a child: mounts of its own that nobody else sees. Throws `Unavailable`.
void enterPrivateMounts();
/// For a child with private mounts.
void mountTmpfs(const std::string& folder, const std::string& options = "");
void mountReadOnly(const std::string& folder); ///< what is mounted there already
void bindMount(const std::string& from, const std::string& to);

/// For a child: gives up every right of the superuser. Throws `Unavailable` for one who has none.
void becomeOrdinaryUser();

/// Where tests that make thousands of things put them: in memory, where the system offers that.
std::string quickPlace();

/// Runs a program with its output thrown away. The exit status; 128 and more for a signal.
int runProgram(const std::vector<std::string>& arguments);

/// The errno of the FileError that `work` throws; 0 when it throws none.
int errorOf(const std::function<void()>& work);

} // namespace korvane::testing
