#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <string>

namespace korvane {

/// The location that a path argument names: a leading "~" is the home folder, a file URL is read as
/// one, a relative path is taken from the working folder. ".." is kept as typed. Throws
/// std::system_error when there is no working folder.
[[nodiscard]] FileURL argumentLocation(const std::string& argument, const FileURL& home);

} // namespace korvane
