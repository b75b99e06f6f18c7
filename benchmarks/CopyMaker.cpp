#include "benchmarks/CopyMaker.h"

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/foundation/StateFile.h"

#include <cerrno>
#include <cstring>
#include <random>

#include <fcntl.h>

namespace korvane::benchmarks {

namespace {

constexpr std::uint64_t filesPerFolder = 200;

void fill(std::string& content, std::uint64_t seed) {
    std::mt19937_64 engine(seed);
    for (std::size_t i = 0; i + sizeof(std::uint64_t) <= content.size();
         i += sizeof(std::uint64_t)) {
        const std::uint64_t value = engine();
        std::memcpy(content.data() + i, &value, sizeof(value));
    }
}

} // namespace

void makeCopies(const std::string& folder, std::uint64_t count, std::uint64_t bytes) {
    std::string content(bytes, 'k');
    std::string parent;
    for (std::uint64_t i = 0; i < count; ++i) {
        if (i % filesPerFolder == 0) {
            parent = folder + "/folder-" + std::to_string(i / filesPerFolder);
            createDirectories(FileURL(parent));
        }
        // 3, 6 and 9 of every ten.
        if (i % 10 % 3 != 0 || i % 10 == 0) {
            fill(content, i);
        }
        const std::string path = parent + "/item-" + std::to_string(i) + ".data";
        const FileDescriptor file(
            open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
        if (!file) {
            throw FileError(errno, "create", path);
        }
        writeAll(file.get(), content, path);
    }
}

} // namespace korvane::benchmarks
