#include "KorvaneCore/platform/BitmapFile.h"

#include "KorvaneCore/platform/RowReducer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstddef>
#include <limits>
#include <span>
#include <utility>

#include <unistd.h>

namespace korvane {

namespace {

constexpr int maximumSide = 65'535;

/// Buffered reading from a position on.
class Bytes {
  public:
    Bytes(int descriptor, std::int64_t position)
        : descriptor_(descriptor), position_(position), buffer_(std::size_t{64} * 1024) {}

    [[nodiscard]] bool read(std::span<std::uint8_t> wanted) {
        while (!wanted.empty()) {
            if (begin_ == end_ && !fill()) {
                return false;
            }
            const std::size_t count = std::min(wanted.size(), end_ - begin_);
            std::copy_n(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_), count,
                        wanted.begin());
            begin_ += count;
            wanted = wanted.subspan(count);
        }
        return true;
    }

  private:
    bool fill() {
        ssize_t count = -1;
        do {
            count = pread(descriptor_, buffer_.data(), buffer_.size(), position_);
        } while (count < 0 && errno == EINTR);
        if (count <= 0) {
            return false;
        }
        position_ += count;
        begin_ = 0;
        end_ = static_cast<std::size_t>(count);
        return true;
    }

    int descriptor_;
    std::int64_t position_;
    std::vector<std::uint8_t> buffer_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
};

using Reducer = RowReducer<std::uint8_t, 3>;

using Colour = std::array<std::uint8_t, 3>;

/// Little-endian numbers of the header.
std::uint32_t number(std::span<const std::uint8_t> bytes, std::size_t at, std::size_t count = 4) {
    std::uint32_t value = 0;
    for (std::size_t i = count; i-- > 0;) {
        value = value << 8U | bytes[at + i];
    }
    return value;
}

/// One colour's bits in a pixel of 16 or 32 bits.
class Channel {
  public:
    Channel() = default;
    explicit Channel(std::uint32_t mask)
        : mask_(mask), shift_(mask == 0 ? 0 : std::countr_zero(mask)), most_(mask >> shift_) {}

    [[nodiscard]] std::uint8_t of(std::uint32_t pixel) const {
        const std::uint64_t value = (pixel & mask_) >> shift_;
        return most_ == 0 ? std::uint8_t{0}
                          : static_cast<std::uint8_t>((value * 255 + most_ / 2) / most_);
    }

  private:
    std::uint32_t mask_ = 0;
    int shift_ = 0;
    std::uint32_t most_ = 0;
};

/// One bitmap while it is read.
class Bitmap {
  public:
    Bitmap(int descriptor, std::int64_t maxPixels)
        : descriptor_(descriptor), maxPixels_(maxPixels) {}

    [[nodiscard]] std::optional<Thumbnail> read(int maxSide) {
        if (!readHeader() || !(bits_ <= 8 ? readPalette() : readChannels())) {
            return std::nullopt;
        }
        row_.resize(static_cast<std::size_t>(size_.width) * 3);
        Reducer reducer(size_, maxSide);
        Bytes bytes(descriptor_, pixelsBegin_);
        const bool hasRuns =
            compression_ == Compression::runs4 || compression_ == Compression::runs8;
        if (!(hasRuns ? readRuns(bytes, reducer) : readRows(bytes, reducer))) {
            return std::nullopt;
        }
        return upright(reducer, size_.fitting(maxSide));
    }

  private:
    enum class Compression : std::uint32_t { none, runs8, runs4, masks, alphaMasks = 6 };

    static constexpr std::uint32_t fileHeader = 14;
    static constexpr std::uint32_t oldInfoHeader = 12; ///< of OS/2: no compression, short numbers
    static constexpr std::uint32_t infoHeader = 40;
    static constexpr std::uint32_t longestInfoHeader = 124;

    [[nodiscard]] Thumbnail upright(const Reducer& reducer, PixelSize size) const;
    bool readHeader();
    bool readSize(std::span<const std::uint8_t> info);
    bool readChannels();
    bool readPalette();
    bool readRows(Bytes& bytes, Reducer& reducer);
    bool readRuns(Bytes& bytes, Reducer& reducer);
    void unpack(std::span<const std::uint8_t> packed);
    void putColour(std::size_t x, std::size_t index) {
        std::copy_n(palette_[index].begin(), 3, &row_[x * 3]);
    }

    int descriptor_;
    std::int64_t maxPixels_;
    std::int64_t pixelsBegin_ = 0;
    std::uint32_t infoLength_ = 0;
    PixelSize size_;
    bool isBottomUp_ = true;
    std::uint32_t bits_ = 0;
    Compression compression_ = Compression::none;
    std::uint32_t colours_ = 0;
    std::array<Channel, 3> channels_;
    std::array<Colour, 256> palette_{}; ///< colours that the file leaves out are black
    std::vector<std::uint8_t> row_;     ///< red, green, blue
};

Thumbnail Bitmap::upright(const Reducer& reducer, PixelSize size) const {
    const auto small = reducer.take(size);
    const auto width = static_cast<std::size_t>(size.width);
    const auto height = static_cast<std::size_t>(size.height);
    Thumbnail thumbnail{size};
    thumbnail.rgba.reserve(width * height * 4);
    for (std::size_t y = 0; y < height; ++y) {
        const std::size_t row = isBottomUp_ ? height - 1 - y : y;
        for (std::size_t x = 0; x < width; ++x) {
            const std::uint8_t* pixel = &small[(row * width + x) * 3];
            thumbnail.rgba.insert(thumbnail.rgba.end(), {pixel[0], pixel[1], pixel[2], 255});
        }
    }
    return thumbnail;
}

bool Bitmap::readHeader() {
    std::array<std::uint8_t, fileHeader + infoHeader> header{};
    Bytes bytes(descriptor_, 0);
    const std::span<std::uint8_t> all(header);
    if (!bytes.read(all.first(fileHeader + oldInfoHeader)) || header[0] != 'B' ||
        header[1] != 'M') {
        return false;
    }
    pixelsBegin_ = number(header, 10);
    infoLength_ = number(header, fileHeader);
    const auto info = all.subspan(fileHeader);
    if (infoLength_ == oldInfoHeader) {
        size_ = {static_cast<int>(number(info, 4, 2)), static_cast<int>(number(info, 6, 2))};
        bits_ = number(info, 10, 2);
    } else if (infoLength_ < infoHeader || infoLength_ > longestInfoHeader ||
               !bytes.read(info.subspan(oldInfoHeader)) || !readSize(info)) {
        return false;
    }
    return size_.width > 0 && size_.height > 0 && size_.width <= maximumSide &&
           size_.height <= maximumSide &&
           static_cast<std::int64_t>(size_.width) * size_.height <= maxPixels_;
}

bool Bitmap::readSize(std::span<const std::uint8_t> info) {
    const auto height = static_cast<std::int32_t>(number(info, 8));
    if (height == std::numeric_limits<std::int32_t>::min()) {
        return false;
    }
    isBottomUp_ = height > 0;
    size_ = {static_cast<std::int32_t>(number(info, 4)), isBottomUp_ ? height : -height};
    bits_ = number(info, 14, 2);
    compression_ = static_cast<Compression>(number(info, 16));
    colours_ = number(info, 32);
    switch (compression_) {
    case Compression::none:
        return true;
    case Compression::runs8:
        return bits_ == 8 && isBottomUp_;
    case Compression::runs4:
        return bits_ == 4 && isBottomUp_;
    case Compression::masks:
    case Compression::alphaMasks:
        return bits_ == 16 || bits_ == 32;
    }
    return false;
}

bool Bitmap::readChannels() {
    if (bits_ == 24) {
        return true;
    }
    std::array<std::uint32_t, 3> masks{0xFF'0000, 0xFF00, 0xFF};
    if (bits_ == 16) {
        masks = {0x7C00, 0x03E0, 0x001F};
    }
    if (compression_ != Compression::none) {
        // Behind the short header or within a longer one, they begin at the same place.
        std::array<std::uint8_t, 12> bytes{};
        if (!Bytes(descriptor_, fileHeader + infoHeader).read(bytes)) {
            return false;
        }
        masks = {number(bytes, 0), number(bytes, 4), number(bytes, 8)};
    }
    std::transform(masks.begin(), masks.end(), channels_.begin(),
                   [](std::uint32_t mask) { return Channel(mask); });
    return bits_ == 16 || bits_ == 32;
}

bool Bitmap::readPalette() {
    if (bits_ != 1 && bits_ != 2 && bits_ != 4 && bits_ != 8) {
        return false;
    }
    const std::uint32_t most = 1U << bits_;
    Bytes bytes(descriptor_, std::int64_t{fileHeader} + infoLength_);
    std::array<std::uint8_t, 4> entry{};
    const std::size_t length = infoLength_ == oldInfoHeader ? 3 : 4;
    const std::uint32_t count = colours_ == 0 ? most : std::min(colours_, most);
    for (std::uint32_t i = 0; i < count; ++i) {
        if (!bytes.read(std::span(entry).first(length))) {
            return false;
        }
        palette_[i] = {entry[2], entry[1], entry[0]};
    }
    return true;
}

bool Bitmap::readRows(Bytes& bytes, Reducer& reducer) {
    // Rows fill whole groups of four bytes.
    std::vector<std::uint8_t> packed((static_cast<std::size_t>(size_.width) * bits_ + 31) / 32 * 4);
    for (int y = 0; y < size_.height; ++y) {
        if (!bytes.read(packed)) {
            return false;
        }
        unpack(packed);
        reducer.add(row_);
    }
    return true;
}

void Bitmap::unpack(std::span<const std::uint8_t> packed) {
    const auto width = static_cast<std::size_t>(size_.width);
    for (std::size_t x = 0; x < width; ++x) {
        if (bits_ == 24) {
            row_[x * 3] = packed[x * 3 + 2];
            row_[x * 3 + 1] = packed[x * 3 + 1];
            row_[x * 3 + 2] = packed[x * 3];
        } else if (bits_ > 8) {
            const std::size_t length = bits_ / 8;
            const std::uint32_t pixel = number(packed, x * length, length);
            for (std::size_t channel = 0; channel < 3; ++channel) {
                row_[x * 3 + channel] = channels_[channel].of(pixel);
            }
        } else {
            const std::size_t bit = x * bits_;
            const std::uint32_t shift = 8U - bits_ - static_cast<std::uint32_t>(bit % 8);
            putColour(x, packed[bit / 8] >> shift & ((1U << bits_) - 1));
        }
    }
}

// Pairs of a count and a colour; a count of 0 begins an escape: 0 ends the row, 1 the picture, 2
// moves on, and from 3 on it is that many pixels one by one.
bool Bitmap::readRuns(Bytes& bytes, Reducer& reducer) {
    const auto width = static_cast<std::size_t>(size_.width);
    const bool isHalves = compression_ == Compression::runs4;
    std::size_t x = 0;
    int y = 0;
    const auto startRow = [&] {
        for (std::size_t i = 0; i < width; ++i) {
            putColour(i, 0);
        }
    };
    const auto finishRow = [&] {
        reducer.add(row_);
        ++y;
        startRow();
    };
    const auto put = [&](std::uint8_t pair, std::size_t i) {
        const std::size_t nibble = i % 2 == 0 ? pair >> 4U : pair & 0xFU;
        if (x < width) {
            putColour(x++, isHalves ? nibble : pair);
        }
    };
    startRow();
    std::array<std::uint8_t, 2> pair{};
    while (y < size_.height) {
        if (!bytes.read(pair)) {
            return false;
        }
        const auto [count, value] = pair;
        for (std::size_t i = 0; i < count; ++i) {
            put(value, i);
        }
        if (count != 0) {
            continue;
        }
        if (value == 0) {
            finishRow();
            x = 0;
        } else if (value == 1) {
            while (y < size_.height) {
                finishRow();
            }
        } else if (value == 2) {
            if (!bytes.read(pair)) {
                return false;
            }
            x = std::min(x + pair[0], width);
            for (int down = pair[1]; down > 0 && y < size_.height; --down) {
                finishRow();
            }
        } else {
            std::array<std::uint8_t, 256> pixels{};
            const std::size_t length = isHalves ? (value + 1U) / 2 : value;
            // Padded to pairs of bytes.
            if (!bytes.read(std::span(pixels).first(length + length % 2))) {
                return false;
            }
            for (std::size_t i = 0; i < value; ++i) {
                put(pixels[isHalves ? i / 2 : i], i);
            }
        }
    }
    return true;
}

} // namespace

std::optional<Thumbnail> bitmapThumbnail(int descriptor, int maxSide, std::int64_t maxPixels) {
    return Bitmap(descriptor, maxPixels).read(maxSide);
}

} // namespace korvane
