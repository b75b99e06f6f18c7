#include "KorvaneCore/platform/ImageDecoder.h"
#include "tests/support/PictureMaker.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <cstdlib>
#include <random>

#include <sys/stat.h>

#include <gtest/gtest.h>

namespace korvane {
namespace {

using namespace std::string_literals;
using testing::Picture;
using testing::TemporaryFolder;

const std::vector<std::string> kinds{".jpg", ".jpeg", ".png", ".heic", ".heif", ".tiff",
                                     ".tif", ".gif",  ".bmp", ".webp", ".avif"};

/// Pictures are told apart by content: their names here say nothing.
std::optional<Thumbnail> decoded(const std::string& file, int maxSide = 64) {
    const TemporaryFolder folder;
    return ImageDecoder::shared().thumbnail(folder.makeFile("picture", file), maxSide);
}

/// The average distance between the bytes of two pictures; a great one when their sizes differ.
double distance(const std::optional<Thumbnail>& a, const std::optional<Thumbnail>& b) {
    if (!a || !b || a->size != b->size || a->rgba.size() != b->rgba.size()) {
        return 255;
    }
    double sum = 0;
    for (std::size_t i = 0; i < a->rgba.size(); ++i) {
        sum += std::abs(a->rgba[i] - b->rgba[i]);
    }
    return sum / static_cast<double>(a->rgba.size());
}

TEST(ImageDecoder, decodesEveryKindToNearlyTheSame) {
    ASSERT_TRUE(ImageDecoder::shared().isAvailable());
    const Picture picture = Picture::ofShapes(1, 400, 300);
    const auto expected = decoded(picture.file(".png"));
    ASSERT_TRUE(expected);
    EXPECT_EQ(expected->size, (PixelSize{64, 48}));
    for (const std::string& kind : kinds) {
        EXPECT_LT(distance(decoded(picture.file(kind)), expected), 5) << kind;
    }
    for (const char* other :
         {".tif[compression=lzw,tile]", ".tif[compression=jpeg,pyramid]", ".png[interlace]",
          ".jpg[interlace,Q=90]", ".webp[lossless]", ".gif[interlace]", ".heic[subsample_mode=off]",
          ".heic[bitdepth=10]", ".avif[subsample_mode=on]", ".avif[bitdepth=12]",
          ".avif[lossless]"}) {
        EXPECT_LT(distance(decoded(picture.file(other)), expected), 5) << other;
    }
}

TEST(ImageDecoder, reducesToTheLongerSideAndNeverEnlarges) {
    const struct {
        int width, height, maxSide;
        PixelSize expected;
    } cases[]{{1, 1, 64, {1, 1}},
              {40, 30, 64, {40, 30}},
              {64, 64, 64, {64, 64}},
              {600, 2, 64, {64, 1}},
              {3, 900, 64, {1, 64}},
              {1300, 1300, 64, {64, 64}},
              {1600, 1200, 256, {256, 192}},
              {400, 200, 100, {100, 50}}};
    for (const auto& [width, height, maxSide, expected] : cases) {
        for (const char* kind : {".png", ".jpg", ".bmp", ".webp"}) {
            const auto made = decoded(Picture::ofShade(200, width, height).file(kind), maxSide);
            ASSERT_TRUE(made) << kind << width;
            EXPECT_EQ(made->size, expected) << kind << width << "x" << height;
            ASSERT_EQ(made->rgba.size(), expected.count() * 4);
            EXPECT_NEAR(made->rgba[0], 200, 2);
            EXPECT_EQ(made->rgba[3], 255);
        }
    }
}

TEST(ImageDecoder, turnsPicturesUprightAsTheCameraNoted) {
    const Picture picture = Picture::ofShapes(2, 400, 300);
    const auto upright = decoded(picture.file(".jpg"));
    const std::string turned = picture.turnedLeft().file(".jpg", 6);
    EXPECT_LT(distance(decoded(turned), upright), 3);
    EXPECT_LT(distance(decoded(picture.turnedLeft().file(".tif", 6)), upright), 3);
    EXPECT_GT(distance(decoded(picture.turnedLeft().file(".jpg")), upright), 10);
}

TEST(ImageDecoder, keepsHowOpaqueAPictureIs) {
    Picture picture{2, 1, 4, {10, 20, 30, 255, 40, 50, 60, 0}};
    const auto made = decoded(picture.file(".png"));
    ASSERT_TRUE(made);
    EXPECT_EQ(made->rgba, picture.pixels);
}

TEST(ImageDecoder, readsAVIFsWithoutColourAndThoseThatLetShineThrough) {
    const auto grey = decoded(Picture{1, 1, 1, {90}}.file(".avif"));
    ASSERT_TRUE(grey);
    EXPECT_LT(distance(grey, Thumbnail{{1, 1}, {90, 90, 90, 255}}), 2);
    Picture half{64, 64, 4};
    for (int i = 0; i < 64 * 64; ++i) {
        const std::uint8_t opacity = i < 64 * 32 ? 255 : 0;
        half.pixels.insert(half.pixels.end(), {200, 100, 50, opacity});
    }
    const auto made = decoded(half.file(".avif"));
    ASSERT_TRUE(made);
    EXPECT_EQ(made->rgba[3], 255);
    EXPECT_EQ(made->rgba.back(), 0);
}

TEST(ImageDecoder, mindsHowTheColoursOfAnAVIFAreCoded) {
    const auto coded = [](Picture picture, char matrix, char range) {
        std::string file = picture.file(".avif");
        const std::size_t profile = file.find("colrnclx");
        file.replace(profile + 12, 3, {'\0', matrix, range});
        return decoded(file);
    };
    constexpr char bt601 = 6;
    constexpr char bt709 = 1;
    constexpr char full = '\x80';
    const Picture grey = Picture::ofShade(200);
    const auto whole = coded(grey, bt601, full);
    const auto narrow = coded(grey, bt601, 0);
    ASSERT_TRUE(whole && narrow);
    EXPECT_NEAR(whole->rgba[0], 200, 2);
    EXPECT_NEAR(narrow->rgba[0], (200 - 16) * 255 / 219, 2);
    // What was red with the one is orange with the other.
    Picture red{16, 16, 3};
    for (int i = 0; i < 16 * 16; ++i) {
        red.pixels.insert(red.pixels.end(), {220, 40, 40});
    }
    const auto right = coded(red, bt601, full);
    const auto wrong = coded(red, bt709, full);
    ASSERT_TRUE(right && wrong);
    EXPECT_NEAR(right->rgba[0], 220, 6);
    EXPECT_NEAR(right->rgba[1], 40, 6);
    EXPECT_GT(wrong->rgba[1], right->rgba[1] + 10);
}

TEST(ImageDecoder, refusesWhatIsNoWholePicture) {
    const Picture picture = Picture::ofShapes(3);
    const std::string png = picture.file(".png");
    std::vector<std::pair<std::string, std::string>> files{
        {"nothing", ""},
        {"one byte", "B"},
        {"text", "This is no picture, whatever its name says."},
        {"zeros", std::string(5000, '\0')},
        {"another kind", picture.file(".ppm")},
        {"drawing", "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"8\"/>"},
        {"document", "%PDF-1.4\n1 0 obj\n<<>>\nendobj\n"},
        {"film", "\0\0\0\x18"s + "ftypmp42" + std::string(100, '\0')},
        {"sound", "RIFF"s + std::string(4, '\0') + "WAVEfmt "},
        {"damaged", png.substr(0, 400) + std::string(200, 'x') + png.substr(600)}};
    for (const std::string& kind : kinds) {
        const std::string whole = picture.file(kind);
        files.emplace_back("half a " + kind, whole.substr(0, whole.size() / 2));
        files.emplace_back("the beginning of a " + kind, whole.substr(0, 20));
    }
    for (const auto& [name, content] : files) {
        EXPECT_FALSE(decoded(content)) << name;
    }
}

TEST(ImageDecoder, refusesMorePixelsThanACameraMakes) {
    EXPECT_FALSE(decoded(testing::hugeFile(".png[bitdepth=1,compression=1]", 30'000, 10'100)));
    EXPECT_FALSE(decoded(testing::hugeFile(".gif[effort=1]", 8'100, 8'000)));
    EXPECT_FALSE(decoded(testing::hugeFile(".jpg[interlace]", 8'100, 8'000)));
    EXPECT_TRUE(decoded(testing::hugeFile(".jpg", 8'100, 8'000)));
}

TEST(ImageDecoder, opensNothingButRegularFiles) {
    const TemporaryFolder folder;
    folder.makeFile("real.png", Picture::ofShade(7).file(".png"));
    folder.makeLink("link.png", "real.png");
    folder.makeFolder("folder.png");
    ASSERT_EQ(mkfifo(folder.at("pipe.png").path().c_str(), 0600), 0);
    EXPECT_TRUE(ImageDecoder::shared().thumbnail(folder.at("real.png"), 64));
    for (const char* name : {"link.png", "folder.png", "pipe.png", "missing.png"}) {
        EXPECT_FALSE(ImageDecoder::shared().thumbnail(folder.at(name), 64)) << name;
    }
}

TEST(ImageDecoder, survivesDamageOfAnySort) {
    std::mt19937 random(20'261'114); // NOLINT(cert-msc51-cpp): the same damage every time
    for (const std::string& kind : kinds) {
        const std::string whole = Picture::ofShapes(4, 60, 50).file(kind);
        for (int round = 0; round < 40; ++round) {
            std::string damaged = whole;
            const std::size_t reach = round % 2 == 0 ? damaged.size() : 100;
            for (int byte = 0; byte < 4; ++byte) {
                damaged[random() % std::min(reach, damaged.size())] = static_cast<char>(random());
            }
            const auto made = decoded(damaged, 32);
            EXPECT_TRUE(!made || (made->rgba.size() == made->size.count() * 4 &&
                                  std::max(made->size.width, made->size.height) <= 32))
                << kind << round;
        }
    }
}

/// A bitmap file: the fields behind the length of the header as 16- or 32-bit numbers, then a
/// palette of blue, green, red triples, then the pixels.
std::string bitmap(const std::vector<std::pair<std::uint32_t, int>>& fields,
                   const std::vector<std::uint32_t>& palette, const std::string& pixels) {
    const auto append = [](std::string& text, std::uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i) {
            text += static_cast<char>(value >> (8 * i));
        }
    };
    std::string info;
    for (const auto& [value, bytes] : fields) {
        append(info, value, bytes);
    }
    const bool isOld = info.size() == 8;
    std::string colours;
    for (const std::uint32_t colour : palette) {
        append(colours, colour, isOld ? 3 : 4);
    }
    std::string file = "BM";
    const std::size_t begin = 18 + info.size() + colours.size();
    append(file, static_cast<std::uint32_t>(begin + pixels.size()), 4);
    append(file, 0, 4);
    append(file, static_cast<std::uint32_t>(begin), 4);
    append(file, static_cast<std::uint32_t>(info.size() + 4), 4);
    return file + info + colours + pixels;
}

std::string bitmap(std::uint32_t width, std::uint32_t height, std::uint32_t bits,
                   std::uint32_t compression, const std::vector<std::uint32_t>& palette,
                   const std::string& pixels) {
    return bitmap({{width, 4},
                   {height, 4},
                   {1, 2},
                   {bits, 2},
                   {compression, 4},
                   {0, 4},
                   {0, 4},
                   {0, 4},
                   {bits > 8 ? 0 : static_cast<std::uint32_t>(palette.size()), 4},
                   {0, 4}},
                  palette, pixels);
}

/// One letter a pixel, rows from the top.
std::string letters(const std::optional<Thumbnail>& picture) {
    if (!picture) {
        return "none";
    }
    std::string text;
    for (std::size_t i = 0; i < picture->size.count(); ++i) {
        const std::uint8_t* pixel = &picture->rgba[i * 4];
        const int colour = pixel[0] << 16 | pixel[1] << 8 | pixel[2];
        text += colour == 0          ? 'k'
                : colour == 0xFF0000 ? 'r'
                : colour == 0x00FF00 ? 'g'
                : colour == 0x0000FF ? 'b'
                : colour == 0xFFFFFF ? 'w'
                                     : '?';
        if ((i + 1) % static_cast<std::size_t>(picture->size.width) == 0) {
            text += '/';
        }
    }
    return text;
}

TEST(BitmapFile, readsEveryDepthAndCompression) {
    const std::vector<std::uint32_t> five{0x000000, 0xFF0000, 0x00FF00, 0x0000FF, 0xFFFFFF};
    const auto minus = [](std::uint32_t height) { return ~height + 1; };
    const struct {
        const char* name;
        std::string file;
        const char* expected;
    } cases[]{
        {"1 bit", bitmap(3, 2, 1, 0, {0xFF0000, 0xFFFFFF}, "\x40\0\0\0\xA0\0\0\0"s), "wrw/rwr/"},
        {"2 bits", bitmap(3, 1, 2, 0, five, "\x6C\0\0\0"s), "rgb/"},
        {"4 bits", bitmap(3, 2, 4, 0, five, "\x12\x30\0\0\x44\0\0\0"s), "wwk/rgb/"},
        {"8 bits", bitmap(2, 2, 8, 0, five, "\1\2\0\0\3\4\0\0"s), "bw/rg/"},
        {"a colour that is not there", bitmap(2, 1, 8, 0, five, "\xFF\4\0\0"s), "kw/"},
        {"8 bits in runs", bitmap(4, 3, 8, 1, five, "\3\1\1\2\0\0\0\3\2\3\4\0\0\0\2\4\0\1"s),
         "wwkk/gbwk/rrrg/"},
        {"runs that move on", bitmap(3, 3, 8, 1, five, "\1\1\0\2\1\1\1\3\0\1"s), "kkk/kkb/rkk/"},
        {"runs beyond the edge", bitmap(2, 1, 8, 1, five, "\xFF\2\0\1"s), "gg/"},
        {"4 bits in runs", bitmap(5, 1, 4, 2, five, "\3\x12\0\2\1\0\1\x30\0\1"s), "rgrkb/"},
        {"5 literal half bytes", bitmap(5, 1, 4, 2, five, "\0\5\x12\x34\x10\0\0\1"s), "rgbwr/"},
        {"16 bits", bitmap(2, 1, 16, 0, {}, "\0\x7C\x1F\0"s), "rb/"},
        {"16 bits with masks", bitmap(2, 1, 16, 3, {0xF800, 0x07E0, 0x001F}, "\xE0\x07\xFF\xFF"s),
         "gw/"},
        {"24 bits", bitmap(1, 2, 24, 0, {}, "\xFF\0\0\0\0\xFF\0\0"s), "g/b/"},
        {"32 bits from the top", bitmap(1, minus(2), 32, 0, {}, "\0\0\xFF\0\xFF\xFF\xFF\0"s),
         "r/w/"},
        {"32 bits with masks", bitmap(1, 1, 32, 3, {0xFF, 0xFF00, 0xFF0000}, "\xFF\0\0\0"s), "r/"},
        {"of OS/2", bitmap({{2, 2}, {1, 2}, {1, 2}, {1, 2}}, {0xFF, 0xFF00}, "\x40\0\0\0"s), "bg/"},
        {"cut off", bitmap(2, 2, 8, 0, five, "\1\2\0\0\3\4\0"s), "none"},
        {"runs without an end", bitmap(4, 3, 8, 1, five, "\3\1\0\0"s), "none"},
        {"runs from the top", bitmap(1, minus(1), 8, 1, five, "\1\1\0\1"s), "none"},
        {"no height", bitmap(1, 0, 24, 0, {}, "\0\0\0\0"s), "none"},
        {"the least height", bitmap(1, 0x80000000U, 24, 0, {}, "\0\0\0\0"s), "none"},
        {"a width below nothing", bitmap(minus(1), 1, 24, 0, {}, "\0\0\0\0"s), "none"},
        {"far too wide", bitmap(0x7FFFFFFF, 1, 24, 0, {}, "\0\0\0\0"s), "none"},
        {"an odd depth", bitmap(1, 1, 7, 0, five, "\0\0\0\0"s), "none"},
        {"a JPEG inside", bitmap(1, 1, 24, 4, {}, "\0\0\0\0"s), "none"},
    };
    for (const auto& [name, file, expected] : cases) {
        EXPECT_EQ(letters(decoded(file)), expected) << name;
    }
}

} // namespace
} // namespace korvane
