#include "KorvaneCore/foundation/Hashing.h"

#include <algorithm>
#include <span>

#include <gtest/gtest.h>

namespace korvane {
namespace {

std::span<const std::byte> bytes(std::string_view text) {
    return std::as_bytes(std::span(text.data(), text.size()));
}

TEST(SHA256, givesThePublishedDigests) {
    const std::pair<std::string, const char*> rows[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
         "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {std::string(1'000'000, 'a'),
         "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    };
    SHA256 hash; // one object for all: each finish starts afresh
    for (const auto& [message, digest] : rows) {
        hash.update(bytes(message));
        EXPECT_EQ(hexText(hash.finish()), digest);
        for (std::size_t at = 0; at < message.size(); at += 777) {
            hash.update(bytes(std::string_view(message).substr(at, 777)));
        }
        SHA256 moved = std::move(hash);
        EXPECT_EQ(hexText(moved.finish()), digest) << "in pieces";
        hash = std::move(moved);
    }
}

TEST(HMACSHA256, givesThePublishedCodes) {
    struct Row {
        std::string key; // shorter keys are padded with zeros, which changes no code
        std::string message;
        const char* code;
    };
    std::string counting;
    for (char c = 1; c <= 25; ++c) {
        counting += c;
    }
    const Row rows[] = {
        {std::string(20, '\x0b'), "Hi There",
         "b0344c61d8db38535ca8afceaf0bf12b881dc200c9833da726e9376c2e32cff7"},
        {"Jefe", "what do ya want for nothing?",
         "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843"},
        {std::string(20, '\xaa'), std::string(50, '\xdd'),
         "773ea91e36800e46854db8ebd09181a72959098b3ef8c122d9635514ced565fe"},
        {counting, std::string(50, '\xcd'),
         "82558a389a443c0ea4cc819899f2083a85f0faa3e578f8077a2e3ff46729665b"},
    };
    for (const Row& row : rows) {
        Key256 key{};
        std::copy(row.key.begin(), row.key.end(), key.begin());
        HMACSHA256 mac(key);
        EXPECT_EQ(hexText(mac.authenticate(row.message)), row.code);
        EXPECT_NE(hexText(mac.authenticate("")), row.code);
        EXPECT_EQ(hexText(mac.authenticate(row.message)), row.code) << "the same key again";
    }
}

TEST(Hashing, keysAreNeverTheSame) {
    const Key256 key = randomKey256();
    EXPECT_NE(key, randomKey256());
    EXPECT_NE(key, Key256{});
    EXPECT_EQ(hexText(std::array<std::uint8_t, 3>{0x00, 0x0f, 0xa5}), "000fa5");
}

} // namespace
} // namespace korvane
