#include "KorvaneCore/platform/FileManager.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <benchmark/benchmark.h>

namespace {

namespace fs = std::filesystem;
using korvane::FileURL;

/// A fresh folder in the temporary one, gone at the end.
class Folder {
  public:
    Folder() : path_((fs::temp_directory_path() / "korvane-benchmark-XXXXXX").string()) {
        if (mkdtemp(path_.data()) == nullptr) {
            std::abort();
        }
    }
    ~Folder() { fs::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }

    void makeFiles(const std::string& name, std::int64_t count) const {
        const fs::path folder = fs::path(path_) / name;
        fs::create_directories(folder);
        for (std::int64_t i = 0; i < count; ++i) {
            std::ofstream(folder / ("file-" + std::to_string(i))) << 'x';
        }
    }

  private:
    std::string path_;
};

void removeTree(benchmark::State& state) {
    const Folder folder;
    constexpr std::int64_t filesPerFolder = 100;
    for (auto _ : state) {
        state.PauseTiming();
        for (std::int64_t i = 0; i < state.range(0) / filesPerFolder; ++i) {
            folder.makeFiles("tree/" + std::to_string(i % 10) + "/" + std::to_string(i),
                             filesPerFolder);
        }
        state.ResumeTiming();
        korvane::FileManager::standard().removeItem(FileURL(folder.path() + "/tree"));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(removeTree)->Arg(20'000)->Unit(benchmark::kMillisecond);

/// Items of one operation, all of the same name as caches have, or each of its own.
void moveToTheBin(benchmark::State& state) {
    const bool haveOneName = state.range(1) != 0;
    for (auto _ : state) {
        state.PauseTiming();
        const Folder folder;
        const auto manager = korvane::FileManager::withHomeTrash(FileURL(folder.path() + "/Trash"));
        for (std::int64_t i = 0; haveOneName && i < state.range(0); ++i) {
            folder.makeFiles("items/" + std::to_string(i) + "/file-0", 0);
        }
        folder.makeFiles("items", haveOneName ? 0 : state.range(0));
        state.ResumeTiming();
        const auto bin = manager->openBin();
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            const std::string name =
                haveOneName ? std::to_string(i) + "/file-0" : "file-" + std::to_string(i);
            bin->trashItem(FileURL(folder.path() + "/items/" + name));
        }
        bin->synchronize();
        state.PauseTiming();
        fs::remove_all(folder.path() + "/items");
        fs::remove_all(folder.path() + "/Trash");
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(moveToTheBin)
    ->ArgNames({"items", "oneName"})
    ->Args({10'000, 0})
    ->Args({10'000, 1})
    ->Unit(benchmark::kMillisecond);

} // namespace
