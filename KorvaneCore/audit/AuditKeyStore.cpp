#include "KorvaneCore/audit/AuditKeyStore.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <thread>

namespace korvane {

namespace {

/// Asks again after a short while when the store could not answer: a service that is just starting
/// must not cost the user the key.
SecretReading readPatiently(SecretStore& secrets) {
    constexpr std::array pauses = {std::chrono::milliseconds(50), std::chrono::milliseconds(200)};
    SecretReading reading = secrets.read(AuditKeyStore::service, AuditKeyStore::account);
    for (const auto pause : pauses) {
        if (reading.outcome != SecretReading::Outcome::unavailable) {
            break;
        }
        std::this_thread::sleep_for(pause);
        reading = secrets.read(AuditKeyStore::service, AuditKeyStore::account);
    }
    return reading;
}

} // namespace

AuditKeyStore::AuditKeyStore(SecretStore& secrets) : secrets_(secrets) {}

Key256 AuditKeyStore::key() {
    const std::lock_guard guard(lock_);
    if (testingKey_) {
        return *testingKey_;
    }
    if (cachedKey_) {
        return *cachedKey_;
    }
    const SecretReading reading = readPatiently(secrets_);
    Key256 key{};
    if (reading.outcome == SecretReading::Outcome::found && reading.data.size() == key.size()) {
        std::copy(reading.data.begin(), reading.data.end(), key.begin());
        origin_ = Origin::stored;
    } else {
        key = randomKey256();
        if (reading.outcome == SecretReading::Outcome::unavailable) {
            origin_ = Origin::madeUnkept;
            problem_ = reading.reason;
        } else if (secrets_.store(service, account,
                                  {reinterpret_cast<const char*>(key.data()), key.size()})) {
            origin_ = Origin::made;
        } else {
            origin_ = Origin::madeUnkept;
            problem_ = "The key of the audit log could not be stored.";
        }
    }
    cachedKey_ = key;
    return key;
}

AuditKeyStore::Origin AuditKeyStore::origin() const {
    const std::lock_guard guard(lock_);
    return origin_;
}

std::string AuditKeyStore::problem() const {
    const std::lock_guard guard(lock_);
    return problem_;
}

void AuditKeyStore::setTestingKey(const std::optional<Key256>& key) {
    const std::lock_guard guard(lock_);
    testingKey_ = key;
    cachedKey_.reset();
    origin_ = key ? Origin::testing : Origin::none;
    problem_.clear();
}

} // namespace korvane
