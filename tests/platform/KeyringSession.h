#pragma once

#include "tests/support/TemporaryFolder.h"

#include <functional>
#include <string>

#include <sys/types.h>

#include <gtest/gtest.h>

namespace korvane::testing {

/// A session bus with, when asked for, a real keyring service on it, all of whose files are in a
/// temporary folder. Only inside `run`.
class KeyringSession {
  public:
    /// Runs `work` in a process of its own, which has a session and talks to no other; its failed
    /// expectations become those of the caller. Empty when it could run, else why not.
    static std::string run(const std::function<void(KeyringSession&)>& work);

    /// Starts the keyring service and unlocks it; the first time it is made.
    void startKeyring();
    void stopKeyring();
    void lockKeyring() const;
    void signalKeyring(int signal) const;
    void endBus() const;
    /// Takes what leads to the bus out of the environment.
    static void hideBus();

    [[nodiscard]] const TemporaryFolder& folder() const { return folder_; }

  private:
    KeyringSession();
    ~KeyringSession();

    TemporaryFolder folder_;
    pid_t bus_ = -1;
    pid_t keyring_ = -1;
};

} // namespace korvane::testing
