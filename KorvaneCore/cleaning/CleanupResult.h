#pragma once

#include "KorvaneCore/cleaning/DeletionMode.h"
#include "KorvaneCore/scan/ScanItem.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// How far a cleanup is.
struct CleanupProgress {
    std::int64_t processed = 0;      ///< items handled so far
    std::int64_t total = 0;          ///< items of the operation
    std::int64_t bytesReclaimed = 0; ///< sizes of the items removed so far, in bytes

    friend bool operator==(const CleanupProgress&, const CleanupProgress&) = default;
};

/// Called on the thread that cleans.
using CleanupProgressHandler = std::function<void(const CleanupProgress&)>;

/// An item that was not removed, and why.
struct CleanupFailure {
    enum class Kind { permission, protectedLocation, excluded, inUse, readOnlyVolume, other };

    ScanItem item;
    std::string error; ///< shown for this item
    Kind kind = Kind::other;

    friend bool operator==(const CleanupFailure&, const CleanupFailure&) = default;
};

[[nodiscard]] std::string_view rawValue(CleanupFailure::Kind kind) noexcept;
/// The sentence shown under the failed item.
[[nodiscard]] std::string_view guidance(CleanupFailure::Kind kind) noexcept;
/// Whether more access rights for the program could help.
[[nodiscard]] bool fullDiskAccessCouldHelp(CleanupFailure::Kind kind) noexcept;

/// An item that needed nothing.
struct CleanupSkip {
    struct Reason {
        enum class Case { removedWithParent, duplicateOfEarlierItem, alreadyGone };
        Case reason = Case::alreadyGone;
        std::optional<FileURL> parent; ///< the folder that took it along, for `removedWithParent`

        friend bool operator==(const Reason&, const Reason&) = default;
    };

    ScanItem item;
    Reason reason;

    friend bool operator==(const CleanupSkip&, const CleanupSkip&) = default;
};

[[nodiscard]] std::string_view rawValue(CleanupSkip::Reason::Case reason) noexcept;
/// A short phrase for the user; the folder's name in it is escaped for display.
[[nodiscard]] std::string description(const CleanupSkip::Reason& reason);

/// The account of every item of an operation, each list in the order of processing.
struct CleanupResult {
    UUID operationID;
    std::vector<ScanItem> succeeded;
    std::vector<CleanupFailure> failed;
    std::vector<CleanupSkip> skipped;
    DeletionMode mode = DeletionMode::trash;
    std::optional<std::int64_t>
        spaceFreedOnDisk;                    ///< measured growth of free space, at least 1 byte
    std::optional<std::string> auditFailure; ///< why the audit record could not be written

    friend bool operator==(const CleanupResult&, const CleanupResult&) = default;
};

/// What a removal error means.
struct RemovalErrorClass {
    bool alreadyGone = false;
    CleanupFailure::Kind kind = CleanupFailure::Kind::other; ///< when not already gone
};
[[nodiscard]] RemovalErrorClass classifyRemovalError(int posixError) noexcept;

} // namespace korvane
