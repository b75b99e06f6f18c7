#pragma once

#include <sys/stat.h>

namespace korvane {

/// Gives an open file or folder the owner, extended attributes (access lists among them), rights
/// and times of another, as far as the user and the file system allow. Never gives anybody more
/// rights than the original did. Throws std::system_error where the rights cannot be set.
void copyAttributes(int from, int to);

/// The same for a link or a special file, which is not opened.
void copyNamedAttributes(int folder, const char* name, const struct stat& facts);

} // namespace korvane
