// What finding copies costs, beside what hashing the same bytes costs that are already in memory:
// the rest is the walk, the opening and the reading.

#include "KorvaneCore/foundation/Hashing.h"
#include "KorvaneCore/scanners/DuplicateScanner.h"
#include "benchmarks/CopyMaker.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <stdlib.h>

#include <benchmark/benchmark.h>

namespace {

using namespace korvane;

/// How a set of files is made up.
struct Shape {
    std::int64_t count;
    std::int64_t bytes;
};

constexpr Shape shapes[] = {{20'000, 16'384}, {2'000, 1'048'576}, {8, 67'108'864}};

/// Files made for one measurement and removed after it.
class Copies {
  public:
    explicit Copies(const Shape& shape) {
        std::string path = std::filesystem::temp_directory_path() / "korvane-copies-XXXXXX";
        if (mkdtemp(path.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), path);
        }
        root_ = FileURL(path);
        benchmarks::makeCopies(path, static_cast<std::uint64_t>(shape.count),
                               static_cast<std::uint64_t>(shape.bytes));
    }
    ~Copies() {
        std::error_code ignored;
        std::filesystem::remove_all(root_.path(), ignored);
    }
    Copies(const Copies&) = delete;
    Copies& operator=(const Copies&) = delete;

    [[nodiscard]] const FileURL& root() const noexcept { return root_; }

  private:
    FileURL root_;
};

void report(benchmark::State& state, const Shape& shape) {
    state.SetBytesProcessed(state.iterations() * shape.count * shape.bytes);
}

void findCopies(benchmark::State& state) {
    const Shape& shape = shapes[state.range(0)];
    const Copies copies(shape);
    const DuplicateScanner scanner(copies.root(), 4096);
    std::size_t found = scanner.scan().items.size(); // also warms the kernel's caches
    for ([[maybe_unused]] const auto iteration : state) {
        found = scanner.scan().items.size();
        benchmark::DoNotOptimize(found);
    }
    state.counters["items"] = static_cast<double>(found);
    report(state, shape);
}

void hashInMemory(benchmark::State& state) {
    const Shape& shape = shapes[state.range(0)];
    const std::vector<std::byte> bytes(
        static_cast<std::size_t>(std::min<std::int64_t>(shape.bytes, 1'048'576)));
    SHA256 sha256;
    for ([[maybe_unused]] const auto iteration : state) {
        for (std::int64_t file = 0; file < shape.count; ++file) {
            for (std::int64_t done = 0; done < shape.bytes;
                 done += static_cast<std::int64_t>(bytes.size())) {
                sha256.update(bytes);
            }
            benchmark::DoNotOptimize(sha256.finish());
        }
    }
    report(state, shape);
}

BENCHMARK(findCopies)->DenseRange(0, 2)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(hashInMemory)->DenseRange(0, 2)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
