#pragma once

#include "KorvaneCore/cleaning/CleanupResult.h"
#include "KorvaneCore/foundation/UUID.h"
#include "KorvaneCore/scan/ScanItem.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <unordered_set>
#include <vector>

namespace korvane {

class Services;

/// Items gathered from several tools, to be removed together in one operation. In memory only:
/// empty at every start. Any thread.
class CollectorStore {
  public:
    static constexpr std::string_view scannerID = "collector";

    [[nodiscard]] std::vector<ScanItem> items() const; ///< in the order in which they were staged
    [[nodiscard]] std::size_t count() const;
    [[nodiscard]] std::int64_t totalBytes() const; ///< overflow is fatal
    [[nodiscard]] bool isDeleting() const;

    /// Adds the items whose standardised paths are not staged yet. Ignored while deleting.
    void stage(std::span<const ScanItem> items);
    /// Drops the staged item of this id; deletes nothing.
    void remove(const UUID& id);
    /// Drops everything; deletes nothing and records nothing.
    void clear();

    /// Removes everything staged as one operation, on the calling thread, and ends with an empty
    /// Collector however it went. What was staged is exactly what is handed to the Cleaner. Nothing
    /// while a delete is under way.
    std::optional<CleanupResult> deleteAll(DeletionMode mode, Services& services,
                                           const CleanupProgressHandler& progress = {});

  private:
    mutable std::mutex lock_;
    std::vector<ScanItem> items_;
    bool isDeleting_ = false;
    std::unordered_set<std::string> stagedPaths_;
};

} // namespace korvane
