#include "tests/platform/KeyringSession.h"

#include <csignal>
#include <cstdlib>
#include <vector>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace korvane::testing {

namespace {

/// Starts a program that ends with this process; `input` and `output` become its first two
/// descriptors.
pid_t start(const std::vector<std::string>& command, int input, int output) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        const int nowhere = open("/dev/null", O_RDWR);
        dup2(input >= 0 ? input : nowhere, STDIN_FILENO);
        dup2(output >= 0 ? output : nowhere, STDOUT_FILENO);
        dup2(nowhere, STDERR_FILENO);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    return child;
}

/// Only before the process has threads. Without a value the variable goes.
void setVariable(const char* name, const char* value = nullptr) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe)
    static_cast<void>(value == nullptr ? unsetenv(name) : setenv(name, value, 1));
}

int finish(pid_t child) {
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

void stop(pid_t& child, int signal) {
    if (child > 0) {
        kill(child, signal);
        finish(child);
        child = -1;
    }
}

/// Runs a program to its end; whether it succeeded.
bool runToEnd(const std::vector<std::string>& command) {
    return finish(start(command, -1, -1)) == 0;
}

bool isInstalled(const std::string& program) {
    return access(("/usr/bin/" + program).c_str(), X_OK) == 0;
}

} // namespace

std::string KeyringSession::run(const std::function<void(KeyringSession&)>& work) {
    for (const char* program : {"dbus-daemon", "gnome-keyring-daemon", "gdbus"}) {
        if (!isInstalled(program)) {
            return std::string(program) + " is not installed";
        }
    }
    const pid_t child = fork();
    if (child == 0) {
        {
            KeyringSession session;
            work(session);
        }
        _exit(::testing::Test::HasFailure() ? 1 : 0);
    }
    EXPECT_EQ(finish(child), 0) << "the session's process failed or was killed";
    return "";
}

KeyringSession::KeyringSession() {
    const std::string listen = folder_.at("bus").absoluteString().substr(7);
    const FileURL configuration = folder_.makeFile(
        "bus.conf", "<busconfig><type>session</type><listen>unix:path=" + listen +
                        "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
                        "<allow send_destination=\"*\"/><allow receive_sender=\"*\"/>"
                        "<allow own=\"*\"/></policy></busconfig>");
    for (const char* variable :
         {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        setVariable(variable, folder_.makeFolder(variable).path().c_str());
    }
    setVariable("DISPLAY");
    setVariable("WAYLAND_DISPLAY");
    int pipe[2] = {-1, -1};
    EXPECT_EQ(pipe2(pipe, O_CLOEXEC), 0);
    bus_ = start({"dbus-daemon", "--nofork", "--nosyslog", "--print-address",
                  "--config-file=" + configuration.path()},
                 -1, pipe[1]);
    close(pipe[1]);
    char address[512] = {};
    EXPECT_GT(read(pipe[0], address, sizeof(address) - 1), 0) << "no session bus";
    close(pipe[0]);
    const std::string text(address);
    setVariable("DBUS_SESSION_BUS_ADDRESS", text.substr(0, text.find('\n')).c_str());
}

KeyringSession::~KeyringSession() {
    stop(keyring_, SIGKILL);
    stop(bus_, SIGKILL);
}

void KeyringSession::startKeyring() {
    int password[2] = {-1, -1};
    ASSERT_EQ(pipe2(password, O_CLOEXEC), 0);
    keyring_ = start({"gnome-keyring-daemon", "--unlock", "--foreground", "--components=secrets"},
                     password[0], -1);
    close(password[0]);
    EXPECT_EQ(write(password[1], "password", 8), 8);
    close(password[1]);
    ASSERT_TRUE(
        runToEnd({"gdbus", "wait", "--session", "--timeout", "30", "org.freedesktop.secrets"}));
}

void KeyringSession::stopKeyring() {
    stop(keyring_, SIGTERM);
}

void KeyringSession::lockKeyring() const {
    ASSERT_TRUE(runToEnd({"gdbus", "call", "--session", "--dest", "org.freedesktop.secrets",
                          "--object-path", "/org/freedesktop/secrets", "--method",
                          "org.freedesktop.Secret.Service.Lock",
                          "['/org/freedesktop/secrets/collection/login']"}));
}

void KeyringSession::signalKeyring(int signal) const {
    ASSERT_EQ(kill(keyring_, signal), 0);
}

void KeyringSession::hideBus() {
    setVariable("DBUS_SESSION_BUS_ADDRESS");
    setVariable("XDG_RUNTIME_DIR");
}

void KeyringSession::endBus() const {
    ASSERT_EQ(kill(bus_, SIGKILL), 0);
}

} // namespace korvane::testing
