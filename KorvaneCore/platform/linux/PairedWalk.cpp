#include "KorvaneCore/platform/linux/PairedWalk.h"

#include "KorvaneCore/platform/DirectoryReader.h"
#include "KorvaneCore/platform/linux/SafeOpen.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace korvane {

void throwErrno(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

std::vector<std::string> namesIn(int folder) {
    if (lseek(folder, 0, SEEK_SET) != 0) {
        throwErrno("rewind");
    }
    std::vector<std::string> names;
    DirectoryReader::Buffer buffer = DirectoryReader::makeBuffer();
    DirectoryReader reader(folder, buffer);
    for (auto entry = reader.next(); entry.has_value(); entry = reader.next()) {
        names.emplace_back(entry->name);
    }
    if (reader.error() != 0) {
        errno = reader.error();
        throwErrno("list");
    }
    std::sort(names.begin(), names.end());
    return names;
}

void PairedWalk::run(int fromParent, const std::string& fromName, int toParent,
                     const std::string& toName) {
    FolderStack from(fromParent);
    FolderStack to(toParent);
    pending_.clear();
    at(from, fromName, to, toName);
    while (!from.isAtBase()) {
        if (!pending_.back().empty()) {
            const std::string name = std::move(pending_.back().back());
            pending_.back().pop_back();
            at(from, name, to, name);
            continue;
        }
        afterFolder(from.descriptor(), to.descriptor());
        pending_.pop_back();
        std::string left;
        for (FolderStack* stack : {&from, &to}) {
            if (const int error = stack->leave(left); error != 0) {
                errno = error;
                throwErrno("go back");
            }
        }
    }
}

void PairedWalk::at(FolderStack& from, const std::string& fromName, FolderStack& to,
                    const std::string& toName) {
    struct stat facts {};
    if (fstatat(from.descriptor(), fromName.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) {
        throwErrno("stat");
    }
    if (!S_ISDIR(facts.st_mode)) {
        atItem(from.descriptor(), fromName.c_str(), to.descriptor(), toName.c_str(), facts);
        return;
    }
    beforeFolder(to.descriptor(), toName.c_str());
    const std::array<std::pair<FolderStack*, const std::string*>, 2> sides{
        {{&from, &fromName}, {&to, &toName}}};
    for (const auto& [stack, name] : sides) {
        FileDescriptor folder = openSubfolder(stack->descriptor(), name->c_str());
        if (!folder) {
            throwErrno("open");
        }
        if (const int error = stack->enter(std::move(folder), *name); error != 0) {
            errno = error;
            throwErrno("enter");
        }
    }
    atFolder(from.descriptor(), to.descriptor());
    pending_.push_back(namesIn(from.descriptor()));
}

} // namespace korvane
