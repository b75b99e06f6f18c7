#pragma once

#include <string>
#include <string_view>

namespace korvane {

/// All of standard input. Throws FileError. An interrupt ends it with what was read.
[[nodiscard]] std::string readStandardInput();

/// One line of standard input without its end; empty at the end of input or after an interrupt.
[[nodiscard]] std::string readLine();

/// Asks on stderr "ACTION? [y/N]" and waits for the answer; only "y" and "yes" are a yes.
[[nodiscard]] bool answersYes(std::string_view action);

} // namespace korvane
