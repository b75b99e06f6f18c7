#pragma once

#include "KorvaneCore/audit/AuditKeyStore.h"
#include "KorvaneCore/audit/AuditLog.h"
#include "KorvaneCore/cleaning/ExclusionStore.h"
#include "KorvaneCore/memory/DecisionMemory.h"
#include "KorvaneCore/memory/ScanResultCache.h"
#include "KorvaneCore/platform/FileManager.h"
#include "KorvaneCore/platform/SecretStore.h"
#include "KorvaneCore/platform/UserDefaults.h"
#include "KorvaneCore/platform/UserFolders.h"
#include "KorvaneCore/scanners/CustomRuleStore.h"

#include <memory>
#include <mutex>
#include <optional>

namespace korvane {

/// A value made when it is first asked for. Any thread.
template <typename T>
class Lazy {
  public:
    template <typename Make>
    T& get(Make make) {
        std::call_once(once_, [&] { value_ = make(); });
        return *value_;
    }

  private:
    std::once_flag once_;
    std::unique_ptr<T> value_;
};

/// The stores of one user, each made when it is first asked for: a command that needs none touches
/// nothing. Lives at the edge of a program; everything below takes what it needs. Any thread.
class Services {
  public:
    explicit Services(UserFolders userFolders, FileManager& files = FileManager::standard());

    [[nodiscard]] const UserFolders& folders() const noexcept { return folders_; }
    [[nodiscard]] const FileURL& home() const noexcept { return folders_.home; }
    [[nodiscard]] FileManager& fileManager() noexcept { return fileManager_; }
    [[nodiscard]] UserDefaults& defaults();
    [[nodiscard]] AuditLog& auditLog();
    [[nodiscard]] ExclusionStore& exclusions();
    [[nodiscard]] ScanResultCache& scanCache();
    [[nodiscard]] DecisionMemory& decisions();
    [[nodiscard]] CustomRuleStore customRules() const;

    /// What the user should know when a new key had to be made although there are log files, whose
    /// entries it cannot verify. Nothing when all is well.
    [[nodiscard]] std::optional<std::string> keyWarning();

  private:
    [[nodiscard]] AuditKeyStore& keys();

    UserFolders folders_;
    FileManager& fileManager_;
    Lazy<UserDefaults> defaults_;
    Lazy<SecretStore> secrets_;
    Lazy<AuditKeyStore> keys_;
    Lazy<AuditLog> auditLog_;
    Lazy<ExclusionStore> exclusions_;
    Lazy<ScanResultCache> scanCache_;
    Lazy<DecisionMemory> decisions_;
    bool logFilesAtStart_ = false;
};

} // namespace korvane
