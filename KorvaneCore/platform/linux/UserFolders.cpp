#include "KorvaneCore/platform/UserFolders.h"

#include <array>
#include <cstdlib>
#include <string>
#include <string_view>

#include <pwd.h>
#include <unistd.h>

namespace korvane {

namespace {

/// A folder named by the environment; relative ones are to be ignored by the XDG convention.
std::string fromEnvironment(const char* variable, std::string otherwise) {
    // The program sets no variable after its start, so reading one is safe on any thread.
    const char* value = std::getenv(variable); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr && value[0] == '/' ? value : std::move(otherwise);
}

std::string homeFromPasswordDatabase() {
    std::array<char, 16384> buffer{};
    passwd record{};
    passwd* found = nullptr;
    const bool ok = getpwuid_r(getuid(), &record, buffer.data(), buffer.size(), &found) == 0;
    return ok && found != nullptr && found->pw_dir[0] == '/' ? found->pw_dir : "/";
}

} // namespace

UserFolders UserFolders::current() {
    UserFolders folders;
    std::string home = fromEnvironment("HOME", "");
    folders.home = FileURL(home.empty() ? homeFromPasswordDatabase() : std::move(home));
    folders.applicationSupport =
        FileURL(fromEnvironment("XDG_DATA_HOME", folders.home.appending(".local/share").path()));
    folders.configuration =
        FileURL(fromEnvironment("XDG_CONFIG_HOME", folders.home.appending(".config").path()));
    folders.temporary = FileURL(fromEnvironment("TMPDIR", "/tmp"));
    return folders;
}

FileURL UserFolders::support(std::string_view component) const {
    return applicationSupport.appending("Korvane").appending(component);
}

} // namespace korvane
