#pragma once

#include "KorvaneCore/foundation/Hashing.h"
#include "KorvaneCore/platform/SecretStore.h"

#include <mutex>
#include <optional>
#include <string>

namespace korvane {

/// Keeps the key of the audit chain: read from the user's secret store once, made when there is
/// none, never written anywhere else. Any thread.
class AuditKeyStore {
  public:
    static constexpr std::string_view service = "com.ostrel.Korvane.audit";
    static constexpr std::string_view account = "audit-hmac-key-v1";

    explicit AuditKeyStore(SecretStore& secrets);

    /// How the key in use came about.
    enum class Origin {
        none,       ///< not asked for yet
        stored,     ///< read from the store
        made,       ///< made and stored, because there was none
        madeUnkept, ///< made for this process only: the store could not be read or written
        testing,
    };

    /// The key. Asked again after a passing failure of the store, which is never taken for the
    /// absence of a key: a stored key is only ever replaced when the store says that there is none
    /// of the right length.
    [[nodiscard]] Key256 key();

    [[nodiscard]] Origin origin() const;
    /// Why the store could not be used, when `madeUnkept`.
    [[nodiscard]] std::string problem() const;

    /// A key that takes precedence over the store and clears what is cached; tests only.
    void setTestingKey(const std::optional<Key256>& key);

  private:
    SecretStore& secrets_;
    mutable std::mutex lock_;
    std::optional<Key256> testingKey_;
    std::optional<Key256> cachedKey_;
    Origin origin_ = Origin::none;
    std::string problem_;
};

} // namespace korvane
