#pragma once

#include "KorvaneCore/platform/SecretStore.h"

#include <chrono>
#include <mutex>

namespace korvane {

/// Keeps secrets with the Secret Service of the desktop session (the user's keyring). Without a
/// session bus, a service on it or the library to speak to it, every secret is `missing` and
/// nothing can be stored. A service that is there and cannot answer (locked, refused, too slow)
/// makes `unavailable`. Any thread.
class SecretServiceStore final : public SecretStore {
  public:
    struct Patience {
        std::chrono::milliseconds answer{10'000}; ///< for one reading or storing
        std::chrono::milliseconds prompt{60'000}; ///< when the user has to type a password
    };

    SecretServiceStore() = default;
    explicit SecretServiceStore(const Patience& patience) : patience_(patience) {}

    /// Asks the user to unlock the keyring when it must; once in the life of the store, so that a
    /// refusal is not asked again.
    [[nodiscard]] SecretReading read(std::string_view service, std::string_view account) override;

    bool store(std::string_view service, std::string_view account, std::string_view data) override;

  private:
    Patience patience_;
    std::mutex lock_;
    bool askedToUnlock_ = false;
};

} // namespace korvane
