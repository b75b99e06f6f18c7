#pragma once

#include "KorvaneCore/platform/linux/FolderStack.h"

#include <string>
#include <vector>

#include <sys/stat.h>

namespace korvane {

/// Goes through a tree and its copy in step, of any depth with few descriptors. What is done on the
/// way is the derived class's; any of its functions may throw std::system_error, which ends the
/// walk.
class PairedWalk {
  public:
    virtual ~PairedWalk() = default;

    /// Both names are relative to open folders, which stay the caller's.
    void run(int fromParent, const std::string& fromName, int toParent, const std::string& toName);

  protected:
    /// Something that is no folder.
    virtual void atItem(int from, const char* fromName, int to, const char* toName,
                        const struct stat& facts) = 0;
    /// Before a folder is opened on both sides.
    virtual void beforeFolder(int to, const char* toName) = 0;
    /// With both folders open, before their entries.
    virtual void atFolder(int from, int to) = 0;
    /// With both folders open, after their entries.
    virtual void afterFolder(int from, int to) = 0;

  private:
    void at(FolderStack& from, const std::string& fromName, FolderStack& to,
            const std::string& toName);

    std::vector<std::vector<std::string>> pending_;
};

/// Throws std::system_error with `errno`.
[[noreturn]] void throwErrno(const char* what);

/// The names in an open folder, sorted. Throws std::system_error.
[[nodiscard]] std::vector<std::string> namesIn(int folder);

} // namespace korvane
