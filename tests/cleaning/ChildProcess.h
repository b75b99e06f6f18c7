#pragma once

#include <cstdlib>
#include <functional>

#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <sched.h>

namespace korvane::testing {

/// Starts `work` in a process of its own, which ends with what it answers.
inline pid_t startChild(const std::function<int()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(work());
    }
    return child;
}

/// The exit status of a child, -1 when it was ended by a signal.
inline int waitForChild(pid_t child) {
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// What a child ends with when this machine does not let it do what the test needs.
inline constexpr int notPermitted = 77;

/// Gives this process mounts of its own, which nobody else sees and which end with it.
inline bool enterPrivateMounts() {
    const int user = geteuid() == 0 ? 0 : CLONE_NEWUSER;
    return unshare(CLONE_NEWNS | user) == 0 &&
           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

inline bool bindMount(const char* folder, const char* at) {
    return mount(folder, at, nullptr, MS_BIND, nullptr) == 0;
}

} // namespace korvane::testing
