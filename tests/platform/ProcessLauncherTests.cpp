#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/ProcessLauncher.h"
#include "tests/support/TemporaryFolder.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace korvane {
namespace {

using korvane::testing::TemporaryFolder;
using std::chrono::milliseconds;

ProcessOutcome run(const ProcessRequest& request) {
    return ProcessLauncher::standard().run(request);
}

ProcessRequest shell(const std::string& script, std::vector<std::string> arguments = {}) {
    ProcessRequest request;
    request.executable = "/bin/sh";
    request.arguments = {"-c", script, "sh"};
    request.arguments.insert(request.arguments.end(), arguments.begin(), arguments.end());
    return request;
}

std::size_t openDescriptors() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

/// Whether a process still runs; a dead one that nobody has collected does not.
bool isRunning(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string number;
    std::string name;
    char state = 'X';
    file >> number >> name >> state;
    return state != 'X' && state != 'Z';
}

bool endsSoon(pid_t process) {
    for (int i = 0; i < 3000 && isRunning(process); ++i) {
        std::this_thread::sleep_for(milliseconds(10));
    }
    return !isRunning(process);
}

TEST(ProcessLauncher, tellsHowAProgramEnded) {
    const TemporaryFolder folder;
    const std::string plain = folder.makeFile("plain", "echo never").path();
    struct Row {
        const char* name;
        ProcessRequest request;
        bool launched;
        int launchError;
        int exitStatus;
        int signal;
        std::string output;
    };
    ProcessRequest missing;
    missing.executable = folder.at("missing").path();
    ProcessRequest relative;
    relative.executable = "sh";
    ProcessRequest unexecutable;
    unexecutable.executable = plain;
    const std::string nul("/tmp\0/x", 7);
    const Row rows[] = {
        {"exit 0", shell("echo out; echo err >&2"), true, 0, 0, 0, "out\n"},
        {"exit 3", shell("printf part; exit 3"), true, 0, 3, 0, "part"},
        {"signal", shell("kill -9 $$"), true, 0, -1, SIGKILL, ""},
        {"missing", missing, false, ENOENT, -1, 0, ""},
        {"relative", relative, false, EINVAL, -1, 0, ""},
        {"not a program", unexecutable, false, EACCES, -1, 0, ""},
        {"NUL in an argument", shell("echo \"$1\"", {nul}), false, EINVAL, -1, 0, ""},
        {"output closed early", shell("exec >&- 2>&-; sleep 0.1; exit 4"), true, 0, 4, 0, ""},
    };
    const std::size_t before = openDescriptors();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const ProcessOutcome outcome = run(row.request);
        EXPECT_EQ(outcome.launched, row.launched);
        EXPECT_EQ(outcome.launchError, row.launchError);
        EXPECT_EQ(outcome.exitStatus, row.exitStatus);
        EXPECT_EQ(outcome.signal, row.signal);
        EXPECT_EQ(outcome.output, row.output);
        EXPECT_EQ(outcome.errors, "");
        EXPECT_EQ(outcome.succeeded(), row.exitStatus == 0);
    }
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child was left behind";
    EXPECT_EQ(errno, ECHILD);
}

TEST(ProcessLauncher, handsArgumentsOverAsTheyAre) {
    const std::vector<std::string> arguments{"a b", "$HOME", "*", "", "'; exit 1", "\xFF\n", "-n"};
    std::string expected;
    for (const std::string& argument : arguments) {
        expected += argument + "|";
    }
    EXPECT_EQ(run(shell("printf '%s|' \"$@\"", arguments)).output, expected);
}

TEST(ProcessLauncher, givesTheProgramACleanSurrounding) {
    ASSERT_EQ(setenv("LC_ALL", "de_DE.UTF-8", 1), 0);
    ASSERT_EQ(setenv("KORVANE_TEST", "kept", 1), 0);
    EXPECT_EQ(run(shell("echo $LC_ALL $KORVANE_TEST; env | grep -c LC_ALL")).output, "C kept\n1\n");

    EXPECT_EQ(run(shell("cat; echo end")).output, "end\n");

    const int leaky = fcntl(open("/dev/null", O_RDONLY), F_DUPFD, 40);
    ASSERT_GE(leaky, 40);
    const std::string path = "/proc/self/fd/" + std::to_string(leaky);
    EXPECT_EQ(run(shell("test -e /proc/self/fd/1 && ! test -e " + path)).exitStatus, 0);
    close(leaky);

    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    std::signal(SIGPIPE, SIG_IGN);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    // The C library keeps two signals above the usual ones for itself and has them ignored.
    const ProcessOutcome outcome = run(shell("grep -Eq '^SigBlk:.0+$' /proc/self/status && "
                                             "grep -Eq '^SigIgn:.0+(18)?0{7}$' /proc/self/status"));
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    std::signal(SIGPIPE, SIG_DFL);
    EXPECT_TRUE(outcome.succeeded());
}

TEST(ProcessLauncher, worksWhereTheStandardDescriptorsAreClosed) {
    const pid_t child = fork();
    if (child == 0) {
        close(STDIN_FILENO);
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
        ProcessRequest request = shell("echo out; echo err >&2; cat");
        request.captureErrors = true;
        const ProcessOutcome outcome = run(request);
        _exit(outcome.output == "out\n" && outcome.errors == "err\n" ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST(ProcessLauncher, readsBothStreamsAndKeepsNoMoreThanAsked) {
    ProcessRequest request =
        shell("head -c 300000 /dev/zero >&2; head -c 3000000 /dev/zero; echo end >&2");
    request.captureErrors = true;
    ProcessOutcome outcome = run(request);
    EXPECT_TRUE(outcome.succeeded());
    EXPECT_EQ(outcome.output.size(), 3'000'000U);
    EXPECT_EQ(outcome.errors.size(), 300'004U);

    request.outputLimit = 1000;
    outcome = run(request);
    EXPECT_TRUE(outcome.succeeded());
    EXPECT_EQ(outcome.output, std::string(1000, '\0'));
    EXPECT_EQ(outcome.errors.size(), 1000U);
}

TEST(ProcessLauncher, conversesOnce) {
    struct Row {
        const char* name;
        const char* script;
        std::string answer;
        std::string output;
    };
    for (const Row& row :
         {Row{"answered", "printf a; read w; echo \"$w\"; cat; echo end", "go\n", "ago\nend\n"},
          Row{"ended", "printf a; read w || echo none", "", "anone\n"},
          Row{"nobody reads", "exec <&-; printf a; sleep 0.2; echo b", "go\n", "ab\n"},
          Row{"nothing said", "exec >&-; exit 0", "go\n", ""}}) {
        SCOPED_TRACE(row.name);
        std::string shown;
        ProcessRequest request = shell(row.script);
        request.conversation = [&](std::string_view output) {
            shown += output;
            return std::optional(row.answer);
        };
        const ProcessOutcome outcome = run(request);
        EXPECT_EQ(outcome.output, row.output);
        EXPECT_EQ(shown, row.output.substr(0, 1));
        EXPECT_TRUE(outcome.succeeded());
    }
    // One that ignores the request to end, but not the end of its input.
    ProcessRequest patient = shell("trap '' TERM; echo ready; read w; exit 7");
    const auto cancellation = Task::makeCancellation();
    const Task::Scope scope(cancellation);
    patient.conversation = [&](std::string_view) {
        Task::cancel(*cancellation);
        return std::optional<std::string>();
    };
    const ProcessOutcome outcome = run(patient);
    EXPECT_TRUE(outcome.cancelled);
    EXPECT_EQ(outcome.exitStatus, 7);
}

TEST(ProcessLauncher, endsWhatTakesTooLong) {
    struct Row {
        const char* script;
        int signal;
    };
    for (const Row& row : {Row{"exec sleep 1000", SIGTERM},
                           Row{"trap '' TERM; while :; do sleep 1000; done", SIGKILL},
                           Row{"exec cat /dev/zero", SIGTERM}}) {
        ProcessRequest request = shell(row.script);
        request.timeLimit = milliseconds(300);
        request.outputLimit = 10;
        const ProcessOutcome outcome = run(request);
        EXPECT_TRUE(outcome.timedOut) << row.script;
        EXPECT_EQ(outcome.signal, row.signal) << row.script;
        EXPECT_FALSE(outcome.succeeded());
    }
    ProcessRequest quick = shell("echo done");
    quick.timeLimit = std::chrono::hours(1);
    EXPECT_TRUE(run(quick).succeeded());
}

TEST(ProcessLauncher, endsAProgramAndItsChildrenWithTheTask) {
    const TemporaryFolder folder;
    const FileURL pids = folder.at("pids");
    const std::string script =
        "(trap '' TERM; exec sleep 1000) & echo $! $$ > \"$1.new\"; mv \"$1.new\" \"$1\"; wait";
    ProcessOutcome outcome;
    Task task([&] { outcome = run(shell(script, {pids.path()})); });
    while (!folder.exists("pids") && !task.isFinished()) {
        std::this_thread::sleep_for(milliseconds(5));
    }
    task.cancel();
    task.wait();
    EXPECT_TRUE(outcome.cancelled);
    EXPECT_FALSE(outcome.timedOut);
    pid_t grandchild = 0;
    pid_t child = 0;
    std::ifstream(pids.path()) >> grandchild >> child;
    ASSERT_GT(grandchild, 0);
    EXPECT_TRUE(endsSoon(grandchild));
    EXPECT_EQ(kill(child, 0), -1) << "the child was not collected";
}

TEST(ProcessLauncher, doesNotWaitForWhatAProgramLeavesRunning) {
    const ProcessOutcome outcome = run(shell("sleep 1000 & echo $!"));
    EXPECT_TRUE(outcome.succeeded());
    const auto left = static_cast<pid_t>(std::strtol(outcome.output.c_str(), nullptr, 10));
    ASSERT_GT(left, 0);
    EXPECT_TRUE(isRunning(left));
    kill(left, SIGKILL);
}

} // namespace
} // namespace korvane
