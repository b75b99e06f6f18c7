#pragma once

#include <string>
#include <vector>

namespace korvane {

class Services;

/// Parses one command line and runs it; answers the exit status. Everything that goes wrong is told
/// in one line on stderr.
int runCommandLine(const std::vector<std::string>& arguments, Services& services);

} // namespace korvane
