// What visiting and sizing cost, an entry of a tree that is in the kernel's caches.

#include "KorvaneCore/scan/FileSystemSize.h"
#include "KorvaneCore/scan/FileSystemWalker.h"
#include "benchmarks/TreeMaker.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <stdlib.h>

#include <benchmark/benchmark.h>

namespace {

using namespace korvane;

constexpr std::int64_t entryCount = 50'000;

/// A tree made at first use and removed at the program's end.
class Tree {
  public:
    static const FileURL& root() {
        static const Tree tree;
        return tree.root_;
    }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

  private:
    Tree() {
        std::string path = std::filesystem::temp_directory_path() / "korvane-walk-XXXXXX";
        if (mkdtemp(path.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), path);
        }
        folder_ = path;
        root_ = FileURL(path + "/tree");
        benchmarks::makeTree(root_.path(), entryCount, 1);
    }
    ~Tree() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    std::string folder_;
    FileURL root_;
};

void walk(benchmark::State& state) {
    const FileURL& root = Tree::root();
    for ([[maybe_unused]] const auto iteration : state) {
        std::int64_t bytes = 0;
        FileSystemWalker().walk(root, nullptr, [&](const WalkEntry& entry) {
            bytes += entry.sizeBytes;
            return WalkDecision::proceed;
        });
        benchmark::DoNotOptimize(bytes);
    }
    state.SetItemsProcessed(state.iterations() * entryCount);
}
BENCHMARK(walk)->Unit(benchmark::kMillisecond)->UseRealTime();

void totalSize(benchmark::State& state) {
    const FileURL& root = Tree::root();
    for ([[maybe_unused]] const auto iteration : state) {
        benchmark::DoNotOptimize(FileSystemWalker().totalSize(root).first);
    }
    state.SetItemsProcessed(state.iterations() * entryCount);
}
BENCHMARK(totalSize)->Unit(benchmark::kMillisecond)->UseRealTime();

void allocatedSize(benchmark::State& state) {
    const FileURL& root = Tree::root();
    for ([[maybe_unused]] const auto iteration : state) {
        benchmark::DoNotOptimize(FileSystemSize::allocatedSize(root));
    }
    state.SetItemsProcessed(state.iterations() * entryCount);
}
BENCHMARK(allocatedSize)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
