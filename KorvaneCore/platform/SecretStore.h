#pragma once

#include <string>
#include <string_view>

namespace korvane {

/// What reading a secret can end in. `unavailable` means that the store could not answer (locked,
/// refused, timed out): the secret may well be there, so nobody may overwrite it.
struct SecretReading {
    enum class Outcome { found, missing, unavailable };
    Outcome outcome = Outcome::missing;
    std::string data;   ///< the bytes, when found
    std::string reason; ///< for people, when unavailable
};

/// A keeper of small secrets for one user, named by service and account. Any thread.
class SecretStore {
  public:
    virtual ~SecretStore() = default;

    [[nodiscard]] virtual SecretReading read(std::string_view service,
                                             std::string_view account) = 0;

    /// Stores or replaces a secret; false when it could not be stored.
    virtual bool store(std::string_view service, std::string_view account,
                       std::string_view data) = 0;
};

} // namespace korvane
