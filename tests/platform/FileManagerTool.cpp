// Does what its arguments say with the file manager, in a process of its own, so that a test can
// trace it, make its system calls fail and kill it.

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/platform/FileManager.h"

#include <cstdio>
#include <span>
#include <string_view>

#include <sys/stat.h>

namespace {

using korvane::FileURL;

/// `trash ITEM…`, `remove ITEM…`, `move ITEM DESTINATION`, `restore ITEM DESTINATION`.
bool run(korvane::FileManager& manager, std::string_view verb, std::span<char*> paths) {
    if (verb == "move" || verb == "restore") {
        const FileURL source(paths[0]);
        const FileURL destination(paths[1]);
        verb == "move" ? manager.moveItem(source, destination)
                       : manager.restoreItem(source, destination);
        return true;
    }
    bool isDone = true;
    const auto bin = verb == "trash" ? manager.openBin() : nullptr;
    for (const char* path : paths) {
        try {
            if (bin) {
                std::puts(bin->trashItem(FileURL(path)).path().c_str());
            } else {
                manager.removeItem(FileURL(path));
            }
        } catch (const korvane::FileError& error) {
            std::fprintf(stderr, "%d %s\n", error.posixError(), error.reason().c_str());
            isDone = false;
        }
    }
    return (!bin || bin->synchronize()) && isDone;
}

} // namespace

int main(int count, char** arguments) {
    if (count < 4) {
        std::fputs("usage: TRASH trash|remove|move|restore PATH…\n", stderr);
        return 2;
    }
    try {
        const auto manager = korvane::FileManager::withHomeTrash(FileURL(arguments[1]));
        const std::span<char*> all(arguments, static_cast<std::size_t>(count));
        return run(*manager, arguments[2], all.subspan(3)) ? 0 : 1;
    } catch (const korvane::FileError& error) {
        std::fprintf(stderr, "%d %s\n", error.posixError(), error.reason().c_str());
        return 1;
    }
}
