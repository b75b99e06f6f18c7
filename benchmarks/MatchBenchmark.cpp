// What asking the protected paths and the guard costs, an item of a cleanup.

#include "KorvaneCore/cleaning/ExclusionStore.h"
#include "KorvaneCore/cleaning/ItemLocation.h"
#include "KorvaneCore/cleaning/SafetyGuard.h"

#include <filesystem>
#include <fstream>
#include <memory>

#include <unistd.h>

#include <benchmark/benchmark.h>

using namespace korvane;

namespace {

constexpr int folderCount = 100;
constexpr int exclusionCount = 50;

/// A home with real files at the depth where caches have them, and a list of protected paths.
class Home {
  public:
    Home() {
        std::string path = std::filesystem::temp_directory_path() / "korvane-match-XXXXXX";
        if (mkdtemp(path.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), path);
        }
        root_ = path;
        home_ = FileURL(std::filesystem::canonical(path) / "home");
        for (int folder = 0; folder < folderCount; ++folder) {
            const std::string name =
                home_.path() + "/.cache/app-" + std::to_string(folder) + "/Default/Cache_Data";
            std::filesystem::create_directories(name);
            for (int file = 0; file < filesPerFolder; ++file) {
                urls_.emplace_back(name + "/f_00" + std::to_string(1000 + file));
                std::ofstream(urls_.back().path()) << 'x';
            }
        }
        store_ = std::make_unique<ExclusionStore>(FileURL(path + "/exclusions.json"), home_);
        for (int i = 0; i < exclusionCount; ++i) {
            store_->add({.id = UUID::random(),
                         .path = "~/Projects/keep-" + std::to_string(i) + "/important",
                         .note = ""});
        }
        guard_ = std::make_unique<SafetyGuard>(home_);
    }
    ~Home() { std::filesystem::remove_all(root_); }
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;

    [[nodiscard]] const std::vector<FileURL>& urls() const { return urls_; }
    [[nodiscard]] const ExclusionStore& store() const { return *store_; }
    [[nodiscard]] const SafetyGuard& guard() const { return *guard_; }

  private:
    static constexpr int filesPerFolder = 100;
    std::string root_;
    FileURL home_;
    std::vector<FileURL> urls_;
    std::unique_ptr<ExclusionStore> store_;
    std::unique_ptr<SafetyGuard> guard_;
};

const Home& home() {
    static const Home shared;
    return shared;
}

constexpr int paths = 100'000;

template <typename Judge>
void judgeAll(benchmark::State& state, Judge judge) {
    const std::vector<FileURL>& urls = home().urls();
    for (auto _ : state) {
        for (int i = 0; i < paths; ++i) {
            benchmark::DoNotOptimize(judge(urls[static_cast<std::size_t>(i) % urls.size()]));
        }
    }
    state.SetItemsProcessed(state.iterations() * paths);
}

void location(benchmark::State& state) {
    judgeAll(state, [](const FileURL& url) { return ItemLocation(url).keys.size(); });
}

void exclusionsThenGuard(benchmark::State& state) {
    judgeAll(state, [](const FileURL& url) {
        const ItemLocation place(url);
        return !home().store().match(place) && home().guard().evaluate(place).isAllowed();
    });
}

void exclusionsThenGuardApart(benchmark::State& state) {
    judgeAll(state, [](const FileURL& url) {
        return !home().store().match(url) && home().guard().allows(url);
    });
}

BENCHMARK(location)->Unit(benchmark::kMillisecond);
BENCHMARK(exclusionsThenGuard)->Unit(benchmark::kMillisecond);
BENCHMARK(exclusionsThenGuardApart)->Unit(benchmark::kMillisecond);

} // namespace
