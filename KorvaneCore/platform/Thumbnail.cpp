#include "KorvaneCore/platform/Thumbnail.h"

#include <algorithm>
#include <cmath>

namespace korvane {

namespace {

/// The source pixels that make up one target pixel along one side; the weights sum up to one.
struct Taps {
    std::size_t first = 0;
    std::vector<double> weights;
};

std::vector<Taps> makeTaps(int from, int to) {
    const double scale = static_cast<double>(from) / to;
    const double reach = std::max(scale, 1.0);
    std::vector<Taps> taps(static_cast<std::size_t>(to));
    for (int target = 0; target < to; ++target) {
        const double centre = (target + 0.5) * scale;
        const int first = std::max(static_cast<int>(std::floor(centre - reach)), 0);
        const int end = std::min(static_cast<int>(std::ceil(centre + reach)), from);
        Taps& one = taps[static_cast<std::size_t>(target)];
        one.first = static_cast<std::size_t>(first);
        double sum = 0;
        for (int source = first; source < end; ++source) {
            const double distance = std::abs(source + 0.5 - centre) / reach;
            one.weights.push_back(std::max(1.0 - distance, 0.0));
            sum += one.weights.back();
        }
        for (double& weight : one.weights) {
            weight /= sum;
        }
    }
    return taps;
}

} // namespace

PixelSize PixelSize::fitting(int maxSide) const noexcept {
    const int longest = std::max(width, height);
    if (longest <= maxSide) {
        return *this;
    }
    const auto scaled = [&](int side) {
        const double exact = static_cast<double>(side) * maxSide / longest;
        return std::max(static_cast<int>(std::lround(exact)), 1);
    };
    return {scaled(width), scaled(height)};
}

std::vector<std::uint8_t> resampled(std::span<const std::uint8_t> pixels, PixelSize from,
                                    PixelSize to, int channels) {
    const auto depth = static_cast<std::size_t>(channels);
    const std::size_t sourceRow = static_cast<std::size_t>(from.width) * depth;
    const std::size_t targetWidth = static_cast<std::size_t>(to.width);
    const std::vector<Taps> columns = makeTaps(from.width, to.width);
    const std::vector<Taps> rows = makeTaps(from.height, to.height);
    std::vector<std::uint8_t> result;
    result.reserve(to.count() * depth);
    std::vector<double> row(sourceRow);
    for (const Taps& taps : rows) {
        std::fill(row.begin(), row.end(), 0.0);
        for (std::size_t i = 0; i < taps.weights.size(); ++i) {
            const auto source = pixels.subspan((taps.first + i) * sourceRow, sourceRow);
            for (std::size_t x = 0; x < sourceRow; ++x) {
                row[x] += taps.weights[i] * source[x];
            }
        }
        for (std::size_t x = 0; x < targetWidth; ++x) {
            for (std::size_t channel = 0; channel < depth; ++channel) {
                double sum = 0;
                for (std::size_t i = 0; i < columns[x].weights.size(); ++i) {
                    sum += columns[x].weights[i] * row[(columns[x].first + i) * depth + channel];
                }
                result.push_back(
                    static_cast<std::uint8_t>(std::lround(std::clamp(sum, 0.0, 255.0))));
            }
        }
    }
    return result;
}

} // namespace korvane
