#pragma once

#include <string>

namespace korvane {

/// Copies an item with everything in it to a name that nothing has yet. Links are copied as links,
/// holes stay holes; rights and times are kept, owners and extended attributes as far as the user
/// and the file system allow. Throws std::system_error; what was copied by then stays.
void copyTree(int fromParent, const std::string& fromName, int toParent, const std::string& toName);

/// Reads both back and throws std::system_error (EIO) unless they hold the same names, kinds,
/// contents and link targets.
void verifyCopy(int fromParent, const std::string& fromName, int toParent,
                const std::string& toName);

} // namespace korvane
