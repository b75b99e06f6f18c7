#pragma once

#include "KorvaneCore/platform/Elevation.h"
#include "KorvaneCore/platform/ProcessLauncher.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace korvane {

/// Elevation through polkit, else through sudo on a terminal; root needs neither.
///
/// The prompt belongs to another program, so the command is started behind a word: a root shell
/// says "ready" once the rights are there, and runs the command only when it hears "go". In between
/// is the last look; when this program ends or the last look says no, the shell reads the end of
/// its input and runs nothing.
class LinuxElevation final : public Elevation {
  public:
    /// What there is to ask with.
    struct Means {
        std::string polkit = "/usr/bin/pkexec";
        std::string sudo = "/usr/bin/sudo";
        bool isRoot = false;
        bool hasTerminal = false; ///< a terminal that sudo can ask on
    };

    /// `means` is asked for each run: a program may be given a terminal, or lose it.
    explicit LinuxElevation(ProcessLauncher& launcher = ProcessLauncher::standard(),
                            std::function<Means()> means = currentMeans)
        : launcher_(launcher), means_(std::move(means)) {}

    [[nodiscard]] bool asksUser() const override { return !means_().isRoot; }
    [[nodiscard]] bool run(const std::string& shellCommand, const LastLook& lastLook) override;

    [[nodiscard]] static Means currentMeans();

  private:
    struct Attempt;
    /// `words`: the program and its arguments, in front of the shell's own.
    [[nodiscard]] Attempt attempt(std::vector<std::string> words, const std::string& shellCommand,
                                  const LastLook& lastLook);

    ProcessLauncher& launcher_;
    std::function<Means()> means_;
};

} // namespace korvane
