#include "KorvaneCore/platform/ProcessLauncher.h"

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/Task.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace korvane {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::string_view localeVariable = "LC_ALL=";
// How long a program may take to end itself after it was asked to.
constexpr milliseconds patience{2000};
// How often a cancellation is looked for; nothing wakes the wait for it.
constexpr milliseconds cancellationInterval{25};
// How often the child is looked at where the system cannot announce its end.
constexpr milliseconds endInterval{10};

/// Frees what posix_spawn was told.
struct SpawnSettings {
    SpawnSettings() {
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
    }
    ~SpawnSettings() {
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

struct Pipe {
    FileDescriptor reading;
    FileDescriptor writing;
};

// Above the standard descriptors: in a program that closed those, a pipe could otherwise take the
// place that the child's own is to be put at.
FileDescriptor aboveStandard(int descriptor) {
    const FileDescriptor low(descriptor);
    return FileDescriptor(fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

int openPipe(Pipe& pipe) {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return errno;
    }
    pipe.reading = aboveStandard(ends[0]);
    const int readingError = errno;
    pipe.writing = aboveStandard(ends[1]);
    if (!pipe.reading) {
        return readingError;
    }
    if (!pipe.writing || fcntl(pipe.reading.get(), F_SETFL, O_NONBLOCK) != 0) {
        return errno;
    }
    return 0;
}

// A socket, because writing to one whose reader has gone can be asked to send no signal.
int openConversation(Pipe& pair) {
    int ends[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        return errno;
    }
    pair.reading = aboveStandard(ends[0]);
    const int readingError = errno;
    pair.writing = aboveStandard(ends[1]);
    if (!pair.reading) {
        return readingError;
    }
    return pair.writing ? 0 : errno;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> list;
    list.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        list.push_back(text.data());
    }
    list.push_back(nullptr);
    return list;
}

std::vector<std::string> childEnvironment() {
    std::vector<std::string> variables;
    for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
        if (!std::string_view(*variable).starts_with(localeVariable)) {
            variables.emplace_back(*variable);
        }
    }
    variables.push_back(std::string(localeVariable) + "C");
    return variables;
}

/// One run of a program.
class Run {
  public:
    explicit Run(const ProcessRequest& request) : request_(request) {}

    ProcessOutcome outcome() {
        outcome_.launchError = start();
        if (outcome_.launchError == 0) {
            outcome_.launched = true;
            attend();
            reap();
        }
        return std::move(outcome_);
    }

  private:
    int start();
    int spawn();
    void attend();
    void converse();
    void waitForNews();
    void checkLimits();
    void end(bool& reason);
    void signal(int number) const;
    void drain(FileDescriptor& pipe, std::string& kept) const;
    [[nodiscard]] milliseconds longestWait() const;
    [[nodiscard]] bool hasEnded() const;
    void reap();

    const ProcessRequest& request_;
    ProcessOutcome outcome_;
    Pipe output_;
    Pipe errors_;
    Pipe input_;            ///< open for writing until the conversation gave its answer
    std::size_t shown_ = 0; ///< bytes of output that the conversation has seen
    pid_t child_ = -1;
    FileDescriptor childHandle_; ///< readable once the child has ended; may be missing
    Clock::time_point started_ = Clock::now();
    std::optional<Clock::time_point> killTime_; ///< set once it was asked to end
    bool killed_ = false;
};

int Run::start() {
    const auto holdsNul = [](const std::string& text) {
        return text.find('\0') != std::string::npos;
    };
    // The program would get the text up to the NUL only: another file than the one meant.
    if (!request_.executable.starts_with('/') || holdsNul(request_.executable) ||
        std::any_of(request_.arguments.begin(), request_.arguments.end(), holdsNul)) {
        return EINVAL;
    }
    if (const int error = openPipe(output_); error != 0) {
        return error;
    }
    if (request_.captureErrors) {
        if (const int error = openPipe(errors_); error != 0) {
            return error;
        }
    }
    if (request_.conversation) {
        if (const int error = openConversation(input_); error != 0) {
            return error;
        }
    }
    const int error = spawn();
    input_.reading.reset();
    output_.writing.reset();
    errors_.writing.reset();
    if (error == 0) {
        childHandle_ = FileDescriptor(static_cast<int>(syscall(SYS_pidfd_open, child_, 0)));
    }
    return error;
}

int Run::spawn() {
    SpawnSettings settings;
    int error = input_.reading ? posix_spawn_file_actions_adddup2(
                                     &settings.actions, input_.reading.get(), STDIN_FILENO)
                               : posix_spawn_file_actions_addopen(&settings.actions, STDIN_FILENO,
                                                                  "/dev/null", O_RDONLY, 0);
    error = error != 0 ? error
                       : posix_spawn_file_actions_adddup2(&settings.actions, output_.writing.get(),
                                                          STDOUT_FILENO);
    if (error == 0) {
        error = request_.captureErrors
                    ? posix_spawn_file_actions_adddup2(&settings.actions, errors_.writing.get(),
                                                       STDERR_FILENO)
                    : posix_spawn_file_actions_addopen(&settings.actions, STDERR_FILENO,
                                                       "/dev/null", O_WRONLY, 0);
    }
    error = error != 0
                ? error
                : posix_spawn_file_actions_addclosefrom_np(&settings.actions, STDERR_FILENO + 1);
    if (error != 0) {
        return error;
    }
    sigset_t every;
    sigset_t none;
    sigfillset(&every);
    sigemptyset(&none);
    posix_spawnattr_setsigdefault(&settings.attributes, &every);
    posix_spawnattr_setsigmask(&settings.attributes, &none);
    short flags = POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK;
    if (!request_.usesTerminal) {
        posix_spawnattr_setpgroup(&settings.attributes, 0);
        flags |= POSIX_SPAWN_SETPGROUP;
    }
    posix_spawnattr_setflags(&settings.attributes, flags);

    std::vector<std::string> arguments{request_.executable};
    arguments.insert(arguments.end(), request_.arguments.begin(), request_.arguments.end());
    std::vector<std::string> environment = childEnvironment();
    return posix_spawn(&child_, request_.executable.c_str(), &settings.actions,
                       &settings.attributes, pointers(arguments).data(),
                       pointers(environment).data());
}

// Reads until the child has ended. What it wrote is in the pipes by then; whoever else still holds
// them (something it started and left behind) is not waited for.
void Run::attend() {
    while (true) {
        const bool ended = hasEnded();
        drain(output_.reading, outcome_.output);
        drain(errors_.reading, outcome_.errors);
        if (ended) {
            return;
        }
        converse();
        checkLimits();
        waitForNews();
    }
}

void Run::converse() {
    if (!input_.writing || outcome_.output.size() == shown_) {
        return;
    }
    shown_ = outcome_.output.size();
    if (const auto answer = request_.conversation(outcome_.output)) {
        // A program that reads no more misses the answer; that shows in how it ends.
        (void)send(input_.writing.get(), answer->data(), answer->size(),
                   MSG_NOSIGNAL | MSG_DONTWAIT);
        input_.writing.reset();
    }
}

void Run::waitForNews() {
    std::array<pollfd, 3> watched{{{output_.reading.get(), POLLIN, 0},
                                   {errors_.reading.get(), POLLIN, 0},
                                   {childHandle_.get(), POLLIN, 0}}};
    // Interrupted or failed, the loop looks at everything again.
    (void)poll(watched.data(), watched.size(), static_cast<int>(longestWait().count()));
}

milliseconds Run::longestWait() const {
    milliseconds longest{60'000};
    const auto until = [&](Clock::time_point moment) {
        const auto left = std::chrono::ceil<milliseconds>(moment - Clock::now());
        longest = std::clamp(left, milliseconds{0}, longest);
    };
    if (!childHandle_) {
        longest = endInterval;
    } else if (request_.endsWithTask && Task::current() != nullptr) {
        longest = cancellationInterval;
    }
    if (killTime_) {
        if (!killed_) {
            until(*killTime_);
        }
    } else if (request_.timeLimit) {
        until(started_ + *request_.timeLimit);
    }
    return longest;
}

void Run::checkLimits() {
    if (killTime_) {
        if (!killed_ && Clock::now() >= *killTime_) {
            signal(SIGKILL);
            killed_ = true;
        }
    } else if (request_.endsWithTask && Task::isCancelled()) {
        end(outcome_.cancelled);
    } else if (request_.timeLimit && Clock::now() - started_ >= *request_.timeLimit) {
        end(outcome_.timedOut);
    }
}

void Run::end(bool& reason) {
    reason = true;
    // One that cannot be signalled and waits for its word must not wait for ever.
    input_.writing.reset();
    signal(SIGTERM);
    killTime_ = Clock::now() + patience;
}

// Only while the child is not reaped: until then its number cannot be anybody else's.
void Run::signal(int number) const {
    kill(request_.usesTerminal ? child_ : -child_, number);
}

void Run::drain(FileDescriptor& pipe, std::string& kept) const {
    std::array<char, 16UL * 1024UL> buffer{};
    // A program that writes without end must not keep the limits from being looked at.
    for (int i = 0; i < 64 && pipe; ++i) {
        const ssize_t count = read(pipe.get(), buffer.data(), buffer.size());
        if (count > 0) {
            const std::size_t room = request_.outputLimit - kept.size();
            kept.append(buffer.data(), std::min(static_cast<std::size_t>(count), room));
        } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
            pipe.reset();
        } else if (errno == EAGAIN) {
            return;
        }
    }
}

bool Run::hasEnded() const {
    siginfo_t info{};
    const int answer = waitid(P_PID, static_cast<id_t>(child_), &info, WEXITED | WNOHANG | WNOWAIT);
    return answer == 0 ? info.si_pid == child_ : errno != EINTR;
}

void Run::reap() {
    if (killTime_) {
        // Whatever it started goes with it; its group's number is still held by the child.
        signal(SIGKILL);
    }
    siginfo_t info{};
    int answer = 0;
    do {
        answer = waitid(P_PID, static_cast<id_t>(child_), &info, WEXITED);
    } while (answer != 0 && errno == EINTR);
    if (answer != 0) {
        return;
    }
    if (info.si_code == CLD_EXITED) {
        outcome_.exitStatus = info.si_status;
    } else {
        outcome_.signal = info.si_status;
    }
}

class SystemProcessLauncher final : public ProcessLauncher {
  public:
    ProcessOutcome run(const ProcessRequest& request) override { return Run(request).outcome(); }
};

} // namespace

ProcessLauncher& ProcessLauncher::standard() {
    static SystemProcessLauncher launcher;
    return launcher;
}

} // namespace korvane
