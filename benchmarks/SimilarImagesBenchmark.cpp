// What one picture's hash costs, a format each, and grouping the hashes of many.

#include "KorvaneCore/scanners/DifferenceHash.h"
#include "KorvaneCore/scanners/SimilarHashes.h"
#include "tests/support/PictureMaker.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>

#include <benchmark/benchmark.h>

using namespace korvane;

namespace {

/// A picture of 12 megapixels in a file that goes with this.
class PictureFile {
  public:
    explicit PictureFile(const std::string& format) {
        std::string folder = std::filesystem::temp_directory_path() / "korvane-pictures-XXXXXX";
        if (mkdtemp(folder.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), folder);
        }
        folder_ = folder;
        std::ofstream(path(), std::ios::binary)
            << testing::Picture::ofShapes(1, 4000, 3000).file(format);
    }
    ~PictureFile() { std::filesystem::remove_all(folder_); }
    PictureFile(const PictureFile&) = delete;
    PictureFile& operator=(const PictureFile&) = delete;

    [[nodiscard]] std::string path() const { return folder_ / "picture"; }

  private:
    std::filesystem::path folder_;
};

void hashOnePicture(benchmark::State& state, const char* format) {
    const PictureFile file(format);
    const FileURL url(file.path());
    if (!differenceHash(url, ImageDecoder::shared())) {
        state.SkipWithError("the picture cannot be decoded");
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(differenceHash(url, ImageDecoder::shared()));
    }
}

// Hashes of which hardly any are alike: every one is compared with every one before it.
void groupUnlikeHashes(benchmark::State& state) {
    std::mt19937_64 random(20'261'114); // NOLINT(cert-msc51-cpp): the same hashes every time
    std::vector<std::uint64_t> hashes(static_cast<std::size_t>(state.range(0)));
    for (std::uint64_t& hash : hashes) {
        hash = random();
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(groupSimilarHashes(hashes, 8));
    }
}

// The processor's time of the whole process: the library decodes on a thread of its own.
#define KORVANE_PICTURE(name, format)                                                              \
    BENCHMARK_CAPTURE(hashOnePicture, name, format)                                                \
        ->MeasureProcessCPUTime()                                                                  \
        ->Unit(benchmark::kMillisecond)
KORVANE_PICTURE(jpeg, ".jpg");
KORVANE_PICTURE(png, ".png[compression=2]");
KORVANE_PICTURE(webp, ".webp[effort=1]");
KORVANE_PICTURE(tiff, ".tif");
KORVANE_PICTURE(bmp, ".bmp");
KORVANE_PICTURE(gif, ".gif[effort=1]");
KORVANE_PICTURE(heic, ".heic[effort=1]");
KORVANE_PICTURE(avif, ".avif[effort=1]");
BENCHMARK(groupUnlikeHashes)->Arg(50'000)->Unit(benchmark::kMillisecond);

} // namespace
