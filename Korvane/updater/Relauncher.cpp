#include "Korvane/updater/Relauncher.h"

#include <unistd.h>

#include <fmt/format.h>

namespace korvane {

std::string relaunchScript(long process, std::string_view openCommand) {
    return fmt::format("while kill -0 {} 2>/dev/null; do sleep 0.2; done; {}", process,
                       openCommand);
}

int relaunchAfterExit(const FileURL& bundle, const DetachedStart& start) {
    return start("/bin/sh", {"-c", relaunchScript(getpid(), bundleOpenCommand(bundle))});
}

} // namespace korvane
