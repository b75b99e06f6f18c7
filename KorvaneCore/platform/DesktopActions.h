#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// Starts a program in a session of its own, with nothing of this process's files, and does not
/// wait for it: it outlives this process. 0, or the errno of the failed start. Any thread.
[[nodiscard]] int startDetached(const std::string& executable,
                                const std::vector<std::string>& arguments);

/// A word for the shell that means exactly these bytes.
[[nodiscard]] std::string shellQuoted(std::string_view text);

/// The program of an application bundle: what its Info.plist names as CFBundleExecutable, on Linux
/// in Contents/Linux/bin. Empty when that is no file which can be run. Any thread.
[[nodiscard]] FileURL bundleProgram(const FileURL& bundle);

/// The shell command that opens an application bundle: on Linux it runs the bundle's program.
[[nodiscard]] std::string bundleOpenCommand(const FileURL& bundle);

/// Shows a file in the desktop's file manager, where there is a desktop; else does nothing.
void revealInFileManager(const FileURL& file);

} // namespace korvane
