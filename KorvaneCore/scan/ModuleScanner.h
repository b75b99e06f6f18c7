#pragma once

#include "KorvaneCore/scan/ScanResult.h"

#include <functional>
#include <optional>
#include <string>

namespace korvane {

/// One report of a scan under way.
struct ScanProgress {
    std::string message;            ///< a status line for people
    std::optional<double> fraction; ///< 0…1; absent when the scanner cannot tell

    friend bool operator==(const ScanProgress&, const ScanProgress&) = default;
};

/// May be called from any thread, any number of times.
using ScanProgressHandler = std::function<void(const ScanProgress&)>;

/// What every tool that looks for reclaimable space implements. A scan does not fail: what cannot
/// be read is left out. It is cancelled by cancelling the task that runs it, and then returns what
/// it had gathered.
class ModuleScanner {
  public:
    virtual ~ModuleScanner() = default;

    /// Persisted in scan caches and audit entries; never changes.
    [[nodiscard]] virtual const std::string& id() const = 0;
    [[nodiscard]] virtual const std::string& displayName() const = 0;
    [[nodiscard]] virtual ScanResult scan(const ScanProgressHandler& progress) const = 0;
    [[nodiscard]] ScanResult scan() const {
        return scan([](const ScanProgress&) {});
    }

  protected:
    ModuleScanner() = default;
    ModuleScanner(const ModuleScanner&) = default;
    ModuleScanner& operator=(const ModuleScanner&) = default;
};

} // namespace korvane
