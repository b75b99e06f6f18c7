#include "KorvaneCore/platform/DesktopActions.h"

#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/platform/PropertyList.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <exception>

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <unistd.h>

extern char** environ;

namespace korvane {

namespace {

/// Frees what posix_spawn was told.
struct DetachedSettings {
    DetachedSettings() {
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
    }
    ~DetachedSettings() {
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
    }
    DetachedSettings(const DetachedSettings&) = delete;
    DetachedSettings& operator=(const DetachedSettings&) = delete;

    int prepare() {
        for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            if (const int error =
                    posix_spawn_file_actions_addopen(&actions, standard, "/dev/null", O_RDWR, 0);
                error != 0) {
                return error;
            }
        }
        sigset_t every;
        sigset_t none;
        sigfillset(&every);
        sigemptyset(&none);
        posix_spawnattr_setsigdefault(&attributes, &every);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK |
                                                  POSIX_SPAWN_SETSID);
        return posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    }

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

} // namespace

int startDetached(const std::string& executable, const std::vector<std::string>& arguments) {
    DetachedSettings settings;
    if (const int error = settings.prepare(); error != 0) {
        return error;
    }
    std::vector<std::string> texts{executable};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    pid_t child = -1;
    return posix_spawn(&child, executable.c_str(), &settings.actions, &settings.attributes,
                       pointers.data(), environ);
}

std::string shellQuoted(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text) {
        if (c == '\'') {
            quoted += "'\\''";
        } else {
            quoted += c;
        }
    }
    return quoted + "'";
}

FileURL bundleProgram(const FileURL& bundle) {
    try {
        const auto document = readFile(bundle.appending("Contents/Info.plist"));
        const auto texts = propertyListTexts(document.value_or(""));
        const auto name = texts.find("CFBundleExecutable");
        if (name == texts.end() || name->second.empty() ||
            name->second.find('/') != std::string::npos) {
            return {};
        }
        FileURL program = bundle.appending("Contents/Linux/bin").appending(name->second);
        struct stat facts {};
        const bool canRun = stat(program.path().c_str(), &facts) == 0 && S_ISREG(facts.st_mode) &&
                            (facts.st_mode & S_IXUSR) != 0;
        return canRun ? program : FileURL();
    } catch (const std::exception&) {
        return {};
    }
}

std::string bundleOpenCommand(const FileURL& bundle) {
    return shellQuoted(bundleProgram(bundle).path());
}

void revealInFileManager(const FileURL& file) {
    // The program sets no variable after its start, so reading one is safe on any thread.
    if (std::getenv("DBUS_SESSION_BUS_ADDRESS") == nullptr) { // NOLINT(concurrency-mt-unsafe)
        return;
    }
    // A comma would begin the next element of the list.
    std::string address = file.absoluteString();
    for (std::size_t comma = address.find(','); comma != std::string::npos;
         comma = address.find(',', comma)) {
        address.replace(comma, 1, "%2C");
    }
    // Without a file manager nothing is shown; the location is told in words anyway.
    (void)startDetached("/usr/bin/dbus-send",
                        {"--session", "--type=method_call", "--dest=org.freedesktop.FileManager1",
                         "/org/freedesktop/FileManager1", "org.freedesktop.FileManager1.ShowItems",
                         "array:string:" + address, "string:"});
}

} // namespace korvane
