#include "tests/support/Sandbox.h"

#include "KorvaneCore/foundation/FileError.h"

#include <array>
#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <grp.h>
#include <gtest/gtest.h>
#include <sched.h>

namespace korvane::testing {

namespace {

constexpr uid_t ordinaryUser = 65534;

std::string outcomeOf(const std::function<std::string()>& work) {
    try {
        return work();
    } catch (const Unavailable& reason) {
        return std::string("\1") + reason.what();
    } catch (const std::exception& error) {
        return std::string("threw ") + error.what();
    }
}

void check(int result, const char* what) {
    if (result != 0) {
        throw Unavailable(std::string(what) + ": " + errorText(errno));
    }
}

int statusOf(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace

void expectInChild(const std::function<std::string()>& work) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const pid_t child = fork();
    if (child == 0) {
        const std::string outcome = outcomeOf(work);
        const bool isWritten =
            write(ends[1], outcome.data(), outcome.size()) == static_cast<ssize_t>(outcome.size());
        _exit(isWritten ? 0 : 1);
    }
    close(ends[1]);
    std::string outcome;
    std::array<char, 1024> buffer{};
    for (ssize_t count = 1; count > 0;) {
        count = read(ends[0], buffer.data(), buffer.size());
        outcome.append(buffer.data(), static_cast<std::size_t>(count > 0 ? count : 0));
    }
    close(ends[0]);
    EXPECT_EQ(statusOf(child), 0);
    if (outcome.starts_with('\1')) {
        GTEST_SKIP() << outcome.substr(1);
    }
    EXPECT_EQ(outcome, "");
}

void enterPrivateMounts() {
    if (geteuid() == 0) {
        check(unshare(CLONE_NEWNS), "no mounts of its own");
    } else {
        const uid_t user = geteuid();
        const gid_t group = getegid();
        check(unshare(CLONE_NEWUSER | CLONE_NEWNS), "no mounts of its own");
        std::ofstream("/proc/self/uid_map") << "0 " + std::to_string(user) + " 1";
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/gid_map") << "0 " + std::to_string(group) + " 1";
    }
    check(mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr), "no private mounts");
}

void mountTmpfs(const std::string& folder, const std::string& options) {
    check(mount("tmpfs", folder.c_str(), "tmpfs", 0, options.c_str()), "no tmpfs");
}

void mountReadOnly(const std::string& folder) {
    check(mount(nullptr, folder.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), "no remount");
}

void bindMount(const std::string& from, const std::string& to) {
    check(mount(from.c_str(), to.c_str(), nullptr, MS_BIND, nullptr), "no bind mount");
}

void becomeOrdinaryUser() {
    if (geteuid() != 0) {
        throw Unavailable("needs the superuser to prepare what an ordinary user may not touch");
    }
    check(setgroups(0, nullptr), "groups stay");
    check(setgid(ordinaryUser), "group stays");
    check(setuid(ordinaryUser), "user stays");
}

std::string quickPlace() {
    return access("/dev/shm", W_OK | X_OK) == 0 ? "/dev/shm"
                                                : std::filesystem::temp_directory_path().string();
}

int runProgram(const std::vector<std::string>& arguments) {
    const pid_t child = fork();
    if (child == 0) {
        const int nowhere = open("/dev/null", O_RDWR);
        dup2(nowhere, STDOUT_FILENO);
        dup2(nowhere, STDERR_FILENO);
        std::vector<char*> raw;
        raw.reserve(arguments.size() + 1);
        for (const std::string& argument : arguments) {
            raw.push_back(const_cast<char*>(argument.c_str()));
        }
        raw.push_back(nullptr);
        execvp(raw[0], raw.data());
        _exit(127);
    }
    return statusOf(child);
}

int errorOf(const std::function<void()>& work) {
    try {
        work();
        return 0;
    } catch (const FileError& error) {
        return error.posixError();
    }
}

} // namespace korvane::testing
