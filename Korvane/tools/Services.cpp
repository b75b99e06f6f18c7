#include "Korvane/tools/Services.h"

#include "KorvaneCore/platform/UserSecretStore.h"

#include <fmt/format.h>

namespace korvane {

Services::Services(UserFolders userFolders, FileManager& files)
    : folders_(std::move(userFolders)), fileManager_(files) {}

UserDefaults& Services::defaults() {
    return defaults_.get([&] {
        return std::make_unique<UserDefaults>(
            folders_.configuration.appending("Korvane/defaults.json"));
    });
}

AuditKeyStore& Services::keys() {
    return keys_.get([&] {
        SecretStore& secrets = secrets_.get([&] { return makeUserSecretStore(folders_); });
        return std::make_unique<AuditKeyStore>(secrets);
    });
}

AuditLog& Services::auditLog() {
    return auditLog_.get([&] {
        auto log = std::make_unique<AuditLog>(folders_.support("Audit"), keys());
        logFilesAtStart_ = log->hasLogFiles();
        return log;
    });
}

ExclusionStore& Services::exclusions() {
    return exclusions_.get([&] {
        return std::make_unique<ExclusionStore>(folders_.support("exclusions.json"), folders_.home);
    });
}

ScanResultCache& Services::scanCache() {
    return scanCache_.get(
        [&] { return std::make_unique<ScanResultCache>(folders_.support("ScanCache")); });
}

DecisionMemory& Services::decisions() {
    return decisions_.get(
        [&] { return std::make_unique<DecisionMemory>(folders_.support("decisions.json")); });
}

CustomRuleStore Services::customRules() const {
    return CustomRuleStore(folders_.support("custom-rules.json"));
}

std::optional<std::string> Services::keyWarning() {
    if (!logFilesAtStart_) {
        return std::nullopt;
    }
    switch (keys().origin()) {
    case AuditKeyStore::Origin::made:
        return "No key for the audit log was found, so a new one was made. Entries written before "
               "now cannot be verified with it.";
    case AuditKeyStore::Origin::madeUnkept:
        return fmt::format("The key of the audit log could not be had ({}), so a new one is used "
                           "for now. Entries written with another key cannot be verified with it.",
                           keys().problem());
    case AuditKeyStore::Origin::none:
    case AuditKeyStore::Origin::stored:
    case AuditKeyStore::Origin::testing:
        return std::nullopt;
    }
    return std::nullopt;
}

} // namespace korvane
