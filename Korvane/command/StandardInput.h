#pragma once

#include <string>

namespace korvane {

/// All of standard input. Throws FileError. An interrupt ends it with what was read.
[[nodiscard]] std::string readStandardInput();

/// One line of standard input without its end; empty at the end of input or after an interrupt.
[[nodiscard]] std::string readLine();

} // namespace korvane
