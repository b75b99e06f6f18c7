#include "KorvaneCore/audit/AuditKeyStore.h"
#include "KorvaneCore/audit/AuditLog.h"
#include "KorvaneCore/platform/linux/FileSecretStore.h"
#include "benchmarks/AuditLogMaker.h"

#include <cstdlib>
#include <filesystem>
#include <string>

#include <benchmark/benchmark.h>

namespace korvane::benchmarks {

namespace {

/// A log with chained entries in a temporary folder, and the key that it is under.
class SampleLog {
  public:
    explicit SampleLog(std::uint64_t entries) { makeAuditLog(FileURL(folder_), entries); }
    ~SampleLog() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    SampleLog(const SampleLog&) = delete;
    SampleLog& operator=(const SampleLog&) = delete;

    AuditLog& log() { return log_; }

  private:
    static std::string makeFolder() {
        std::string path = std::filesystem::temp_directory_path().string() + "/korvane-log-XXXXXX";
        return mkdtemp(path.data()) == nullptr ? std::string() : path;
    }

    std::string folder_ = makeFolder();
    FileSecretStore secrets_{FileURL(folder_ + "/Korvane/Secrets")};
    AuditKeyStore keys_{secrets_};
    AuditLog log_{FileURL(folder_ + "/Korvane/Audit"), keys_};
};

void verifyChain(benchmark::State& state) {
    SampleLog sample(static_cast<std::uint64_t>(state.range(0)));
    for ([[maybe_unused]] const auto iteration : state) {
        const AuditChainResult result = sample.log().verifyChain();
        if (result.checkedCount != state.range(0)) {
            state.SkipWithError("the chain does not verify");
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void readEntries(benchmark::State& state) {
    SampleLog sample(static_cast<std::uint64_t>(state.range(0)));
    for ([[maybe_unused]] const auto iteration : state) {
        benchmark::DoNotOptimize(sample.log().entries());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// One record at the end of a log; most of it is waiting for the disk.
void appendRecord(benchmark::State& state) {
    SampleLog sample(static_cast<std::uint64_t>(state.range(0)));
    for ([[maybe_unused]] const auto iteration : state) {
        sample.log().record("trash", {"/home/ann/a"}, 0, 1, UUID::random(), {}, Date::now());
    }
}

BENCHMARK(verifyChain)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(readEntries)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(appendRecord)->Arg(100'000)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace korvane::benchmarks
