#pragma once

#include <functional>
#include <string>

namespace korvane {

/// Runs one shell command with administrator rights, after the system asked the user for them. The
/// password is the system's business; this program never sees it. One run at a time.
class Elevation {
  public:
    /// Asked when the user has agreed and the command would run next, as late as the system allows:
    /// minutes may have passed since the call. False: the command is not run. Must not throw.
    using LastLook = std::function<bool()>;

    virtual ~Elevation() = default;

    /// Whether the user will be asked for a password, as far as that is known beforehand.
    [[nodiscard]] virtual bool asksUser() const = 0;

    /// Blocks until the command has ended or the request has. True when the command ran and ended
    /// with status 0; false when the prompt was dismissed, the system declined, there is no way to
    /// ask, the last look said no, or the surrounding task was cancelled. Never throws.
    [[nodiscard]] virtual bool run(const std::string& shellCommand, const LastLook& lastLook) = 0;

    /// The system's own.
    [[nodiscard]] static Elevation& standard();
};

} // namespace korvane
