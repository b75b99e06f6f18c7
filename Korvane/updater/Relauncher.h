#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/DesktopActions.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// Starts a program that outlives this one: its path and arguments; 0 or errno.
using DetachedStart = std::function<int(const std::string&, const std::vector<std::string>&)>;

/// The script that waits for the end of a process and then runs a command.
[[nodiscard]] std::string relaunchScript(long process, std::string_view openCommand);

/// Sees to it that the app is opened again once this process has ended. 0 or errno. Any thread.
[[nodiscard]] int relaunchAfterExit(const FileURL& bundle,
                                    const DetachedStart& start = startDetached);

} // namespace korvane
