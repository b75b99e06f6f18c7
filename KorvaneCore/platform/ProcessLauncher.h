#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// How to run one program. No shell is ever involved: arguments are handed over as they are.
struct ProcessRequest {
    std::string executable;                             ///< absolute path
    std::vector<std::string> arguments;                 ///< without the program's own name
    std::optional<std::chrono::milliseconds> timeLimit; ///< none: as long as it takes
    /// Bytes of output kept; the rest is read and dropped.
    std::size_t outputLimit = 64UL * 1024UL * 1024UL;
    bool captureErrors = false; ///< keep standard error too; else it goes to /dev/null
    /// Ends the program when the surrounding task is cancelled.
    bool endsWithTask = true;
    /// For programs that ask on the controlling terminal: stays in the foreground process group, so
    /// only the program itself, and not what it started, can be ended early.
    bool usesTerminal = false;
    /// For programs that wait for a word: shown all output so far each time there is more, on the
    /// thread that called `run`, until it answers. The answer, a few kilobytes at most, goes to
    /// standard input, which ends behind it; an empty one only ends it. Must not throw. Limits and
    /// cancellation rest while it works; they end standard input too. Not set: it is empty.
    std::function<std::optional<std::string>(std::string_view output)> conversation;
};

/// How it ended.
struct ProcessOutcome {
    bool launched = false; ///< false: there is no such program, or it could not be started
    int launchError = 0;   ///< errno of the failed start; EINVAL: no absolute path, or a NUL inside
    int exitStatus = -1;   ///< valid when it exited by itself
    int signal = 0;        ///< the signal that ended it, else 0
    bool timedOut = false;
    bool cancelled = false;
    std::string output;
    std::string errors;

    [[nodiscard]] bool succeeded() const noexcept {
        return launched && !timedOut && !cancelled && signal == 0 && exitStatus == 0;
    }
};

/// Starts programs. Never throws; waits for the end. The child gets an empty standard input (or
/// one end of a conversation), no descriptor of ours, default signal handling, and the C locale for
/// its texts. A time limit or a cancellation asks it and all it started to end and, two seconds
/// later, ends them; a program that this user may not signal is waited for. Output that something
/// it left running writes after the program's own end is not waited for. Any thread.
class ProcessLauncher {
  public:
    virtual ~ProcessLauncher() = default;
    [[nodiscard]] virtual ProcessOutcome run(const ProcessRequest& request) = 0;

    /// The real one.
    [[nodiscard]] static ProcessLauncher& standard();
};

} // namespace korvane
