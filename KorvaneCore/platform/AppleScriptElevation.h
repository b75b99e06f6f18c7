#pragma once

#include "KorvaneCore/platform/Elevation.h"
#include "KorvaneCore/platform/ProcessLauncher.h"

#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// The text as a string literal of AppleScript, in double quotes. Nothing for text that holds what
/// no literal can: control characters other than tab, line feed and carriage return, the Unicode
/// line and paragraph separators, bytes that are not UTF-8.
[[nodiscard]] std::optional<std::string> appleScriptLiteral(std::string_view text);

/// Elevation by AppleScript's administrator privileges. The script cannot say when the prompt was
/// answered, so the last look comes right before the prompt.
class AppleScriptElevation final : public Elevation {
  public:
    explicit AppleScriptElevation(ProcessLauncher& launcher = ProcessLauncher::standard())
        : launcher_(launcher) {}

    [[nodiscard]] bool asksUser() const override { return true; }
    [[nodiscard]] bool run(const std::string& shellCommand, const LastLook& lastLook) override;

  private:
    ProcessLauncher& launcher_;
};

} // namespace korvane
