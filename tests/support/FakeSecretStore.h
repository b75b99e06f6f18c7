#pragma once

#include "KorvaneCore/platform/SecretStore.h"

#include <map>
#include <string>
#include <utility>

namespace korvane::testing {

/// A secret store in memory whose troubles a test can set. For one thread.
class FakeSecretStore : public SecretStore {
  public:
    SecretReading read(std::string_view service, std::string_view account) override;
    bool store(std::string_view service, std::string_view account, std::string_view data) override;

    int unavailableReadings = 0; ///< how many readings from now on cannot be answered
    bool refusesToStore = false;
    int readings = 0;
    std::map<std::pair<std::string, std::string>, std::string, std::less<>> secrets;
};

} // namespace korvane::testing
