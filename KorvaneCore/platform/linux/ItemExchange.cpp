#include "KorvaneCore/platform/ItemExchange.h"

#include "KorvaneCore/platform/DirectoryReader.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace korvane {

int exchangeItems(const FileURL& first, const FileURL& second) noexcept {
    return renameat2(AT_FDCWD, first.path().c_str(), AT_FDCWD, second.path().c_str(),
                     RENAME_EXCHANGE) == 0
               ? 0
               : errno;
}

int flushFileSystem(const FileURL& folder) noexcept {
    const FileDescriptor descriptor = openFolderFollowingLinks(AT_FDCWD, folder.path().c_str());
    return descriptor && syncfs(descriptor.get()) == 0 ? 0 : errno;
}

} // namespace korvane
