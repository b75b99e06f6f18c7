#include "KorvaneCore/foundation/Hashing.h"

#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/foundation/RandomBytes.h"

#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/params.h>

namespace korvane {

namespace {

// A digest that cannot be computed means a broken installation: nothing may be judged by it.
void require(bool ok) {
    if (!ok) {
        fatalError("the cryptographic library refused SHA-256");
    }
}

} // namespace

struct SHA256::Context {
    EVP_MD* algorithm = EVP_MD_fetch(nullptr, "SHA256", nullptr);
    EVP_MD_CTX* state = EVP_MD_CTX_new();

    Context() {
        require(algorithm != nullptr && state != nullptr);
        start();
    }
    ~Context() {
        EVP_MD_CTX_free(state);
        EVP_MD_free(algorithm);
    }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    void start() const { require(EVP_DigestInit_ex2(state, algorithm, nullptr) == 1); }
};

SHA256::SHA256() : context_(std::make_unique<Context>()) {}
SHA256::~SHA256() = default;
SHA256::SHA256(SHA256&&) noexcept = default;
SHA256& SHA256::operator=(SHA256&&) noexcept = default;

void SHA256::update(std::span<const std::byte> bytes) {
    require(EVP_DigestUpdate(context_->state, bytes.data(), bytes.size()) == 1);
}

Digest256 SHA256::finish() {
    Digest256 digest{};
    require(EVP_DigestFinal_ex(context_->state, digest.data(), nullptr) == 1);
    context_->start();
    return digest;
}

struct HMACSHA256::Context {
    EVP_MAC* algorithm = EVP_MAC_fetch(nullptr, "HMAC", nullptr);
    EVP_MAC_CTX* state = nullptr;

    explicit Context(const Key256& key) {
        require(algorithm != nullptr);
        state = EVP_MAC_CTX_new(algorithm);
        char digestName[] = "SHA256";
        const OSSL_PARAM parameters[] = {
            OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, digestName, 0),
            OSSL_PARAM_construct_end()};
        require(state != nullptr && EVP_MAC_init(state, key.data(), key.size(), parameters) == 1);
    }
    ~Context() {
        EVP_MAC_CTX_free(state);
        EVP_MAC_free(algorithm);
    }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
};

HMACSHA256::HMACSHA256(const Key256& key) : context_(std::make_unique<Context>(key)) {}
HMACSHA256::~HMACSHA256() = default;
HMACSHA256::HMACSHA256(HMACSHA256&&) noexcept = default;
HMACSHA256& HMACSHA256::operator=(HMACSHA256&&) noexcept = default;

Digest256 HMACSHA256::authenticate(std::string_view message) {
    Digest256 code{};
    std::size_t length = 0;
    // Without a key the context starts again under the one it has.
    require(EVP_MAC_init(context_->state, nullptr, 0, nullptr) == 1 &&
            EVP_MAC_update(context_->state, reinterpret_cast<const unsigned char*>(message.data()),
                           message.size()) == 1 &&
            EVP_MAC_final(context_->state, code.data(), &length, code.size()) == 1 &&
            length == code.size());
    return code;
}

Key256 randomKey256() {
    Key256 key{};
    fillRandom(key);
    return key;
}

std::string hexText(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4U];
        text += digits[byte & 15U];
    }
    return text;
}

} // namespace korvane
