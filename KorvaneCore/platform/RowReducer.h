#pragma once

#include "KorvaneCore/platform/Thumbnail.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace korvane {

/// Makes a picture small as its rows come in, so that only a little more than the thumbnail is ever
/// held: whole squares of pixels are averaged, twice the thumbnail's size being kept for a smooth
/// reduction at the end. `Sample` is an unsigned number, of which `most` is full brightness; a
/// pixel has `channels` of them.
template <typename Sample, std::size_t channels>
class RowReducer {
  public:
    /// For a thumbnail of `maxSide`.
    RowReducer(PixelSize size, int maxSide, unsigned most = std::numeric_limits<Sample>::max())
        : size_(size), most_(most),
          block_(std::max(std::max(size.width, size.height) / (2 * maxSide), 1)),
          reduced_{(size.width + block_ - 1) / block_, (size.height + block_ - 1) / block_},
          sums_(static_cast<std::size_t>(reduced_.width) * channels) {
        pixels_.reserve(reduced_.count() * channels);
    }

    /// The next row, whole.
    void add(std::span<const Sample> row) {
        const std::size_t end = static_cast<std::size_t>(size_.width) * channels;
        const std::size_t step = static_cast<std::size_t>(block_) * channels;
        std::size_t target = 0;
        for (std::size_t begin = 0; begin < end; begin += step) {
            const std::size_t last = std::min(begin + step, end);
            std::array<std::uint32_t, channels> sums{};
            for (std::size_t at = begin; at < last; at += channels) {
                for (std::size_t channel = 0; channel < channels; ++channel) {
                    sums[channel] += row[at + channel];
                }
            }
            for (const std::uint32_t sum : sums) {
                sums_[target++] += sum;
            }
        }
        ++rows_;
        if (++rowsInBlock_ == block_ || rows_ == size_.height) {
            finishBlocks();
        }
    }

    /// All rows at the size wanted, `channels` bytes a pixel.
    [[nodiscard]] std::vector<std::uint8_t> take(PixelSize target) const {
        return resampled(pixels_, reduced_, target, static_cast<int>(channels));
    }

  private:
    void finishBlocks() {
        for (int x = 0; x < reduced_.width; ++x) {
            const int columns = std::min(block_, size_.width - x * block_);
            const std::uint64_t whole =
                std::uint64_t{most_} * static_cast<unsigned>(columns * rowsInBlock_);
            for (std::size_t channel = 0; channel < channels; ++channel) {
                std::uint64_t& sum = sums_[static_cast<std::size_t>(x) * channels + channel];
                const std::uint64_t share = (sum * 255 + whole / 2) / whole;
                pixels_.push_back(static_cast<std::uint8_t>(std::min<std::uint64_t>(share, 255)));
                sum = 0;
            }
        }
        rowsInBlock_ = 0;
    }

    PixelSize size_;
    unsigned most_;
    int block_;
    PixelSize reduced_;
    std::vector<std::uint64_t> sums_;
    std::vector<std::uint8_t> pixels_;
    int rowsInBlock_ = 0;
    int rows_ = 0;
};

} // namespace korvane
