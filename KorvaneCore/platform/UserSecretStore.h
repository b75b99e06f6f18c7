#pragma once

#include "KorvaneCore/platform/SecretStore.h"
#include "KorvaneCore/platform/UserFolders.h"

#include <memory>

namespace korvane {

/// The store that keeps this user's secrets on this system. Nothing is contacted or made on disk
/// before a secret is asked for.
[[nodiscard]] std::unique_ptr<SecretStore> makeUserSecretStore(const UserFolders& folders);

} // namespace korvane
