#include "benchmarks/TreeMaker.h"

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/FileError.h"

#include <cerrno>
#include <random>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane::benchmarks {

namespace {

constexpr int deepest = 8;
constexpr std::uint64_t largestFile = 12'000;

struct Folder {
    std::string path;
    int depth = 0;
};

/// The standard's distributions differ between libraries; this makes the same tree everywhere.
class Dice {
  public:
    explicit Dice(std::uint64_t seed) : engine_(seed) {}
    std::uint64_t upTo(std::uint64_t last) { return engine_() % (last + 1); }
    bool chance(std::uint64_t percent) { return upTo(99) < percent; }

  private:
    std::mt19937_64 engine_;
};

void makeFolder(const std::string& path) {
    if (mkdir(path.c_str(), 0755) != 0) {
        throw FileError(errno, "create the folder", path);
    }
}

void makeFile(const std::string& path, std::string_view content) {
    const FileDescriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    if (!file ||
        write(file.get(), content.data(), content.size()) != static_cast<ssize_t>(content.size())) {
        throw FileError(errno, "create", path);
    }
}

std::uint64_t fileSize(Dice& dice) {
    if (dice.chance(20)) {
        return 0;
    }
    return dice.chance(90) ? dice.upTo(4095) + 1 : dice.upTo(largestFile);
}

} // namespace

void makeTree(const std::string& folder, std::uint64_t entries, std::uint64_t seed) {
    Dice dice(seed);
    const std::string content(largestFile, 'k');
    makeFolder(folder);
    std::vector<Folder> open{{folder, 0}};
    std::uint64_t made = 0;
    while (made < entries) {
        const Folder parent = open[dice.upTo(open.size() - 1)];
        const Folder inner{parent.path + "/folder-" + std::to_string(made), parent.depth + 1};
        makeFolder(inner.path);
        ++made;
        if (inner.depth < deepest) {
            open.push_back(inner);
        }
        const std::uint64_t files = dice.chance(15) ? 20 + dice.upTo(20) : dice.upTo(3);
        for (std::uint64_t i = 0; i < files && made < entries; ++i, ++made) {
            makeFile(inner.path + "/item-" + std::to_string(made) + ".data",
                     std::string_view(content).substr(0, fileSize(dice)));
        }
    }
}

void makeFiles(const std::string& folder, std::uint64_t count) {
    makeFolder(folder);
    for (std::uint64_t i = 0; i < count; ++i) {
        makeFile(folder + "/item-" + std::to_string(i) + ".data", "kept for the next start\n");
    }
}

} // namespace korvane::benchmarks
