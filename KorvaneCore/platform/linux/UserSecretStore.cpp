#include "KorvaneCore/platform/UserSecretStore.h"

#include "KorvaneCore/platform/linux/FileSecretStore.h"
#include "KorvaneCore/platform/linux/SecretServiceStore.h"

namespace korvane {

namespace {

/// The keyring where there is one, a file where there is none. A secret that was made on a console
/// stays in its file and goes on being used under a desktop.
class LinuxSecretStore final : public SecretStore {
  public:
    explicit LinuxSecretStore(FileURL folder) : files_(std::move(folder)) {}

    [[nodiscard]] SecretReading read(std::string_view service, std::string_view account) override {
        SecretReading kept = keyring_.read(service, account);
        if (kept.outcome == SecretReading::Outcome::found) {
            return kept;
        }
        SecretReading inFile = files_.read(service, account);
        // A keyring that cannot answer may hold the secret: only a file that has it says more.
        return kept.outcome == SecretReading::Outcome::unavailable &&
                       inFile.outcome != SecretReading::Outcome::found
                   ? kept
                   : inFile;
    }

    bool store(std::string_view service, std::string_view account, std::string_view data) override {
        return keyring_.store(service, account, data) || files_.store(service, account, data);
    }

  private:
    SecretServiceStore keyring_;
    FileSecretStore files_;
};

} // namespace

std::unique_ptr<SecretStore> makeUserSecretStore(const UserFolders& folders) {
    return std::make_unique<LinuxSecretStore>(folders.support("Secrets"));
}

} // namespace korvane
