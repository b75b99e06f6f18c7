#include "tests/support/FakeSecretStore.h"

namespace korvane::testing {

SecretReading FakeSecretStore::read(std::string_view service, std::string_view account) {
    ++readings;
    if (unavailableReadings > 0) {
        --unavailableReadings;
        return {SecretReading::Outcome::unavailable, "", "The keyring is locked."};
    }
    const auto found = secrets.find(std::pair(std::string(service), std::string(account)));
    if (found == secrets.end()) {
        return {};
    }
    return {SecretReading::Outcome::found, found->second, ""};
}

bool FakeSecretStore::store(std::string_view service, std::string_view account,
                            std::string_view data) {
    if (refusesToStore) {
        return false;
    }
    secrets[{std::string(service), std::string(account)}] = data;
    return true;
}

} // namespace korvane::testing
