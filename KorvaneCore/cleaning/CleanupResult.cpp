#include "KorvaneCore/cleaning/CleanupResult.h"

#include "KorvaneCore/foundation/Text.h"

#include <cerrno>

namespace korvane {

std::string_view rawValue(CleanupFailure::Kind kind) noexcept {
    using enum CleanupFailure::Kind;
    switch (kind) {
    case permission:
        return "permission";
    case protectedLocation:
        return "protectedLocation";
    case excluded:
        return "excluded";
    case inUse:
        return "inUse";
    case readOnlyVolume:
        return "readOnlyVolume";
    case other:
        break;
    }
    return "other";
}

std::string_view guidance(CleanupFailure::Kind kind) noexcept {
    using enum CleanupFailure::Kind;
    switch (kind) {
    case permission:
        return "macOS is blocking this. Granting Korvane Full Disk Access usually fixes it.";
    case protectedLocation:
        return "Korvane refuses to delete this - it's a system or home folder that macOS needs.";
    case excluded:
        return "This is on your exclusion list, so Korvane left it alone. Change that in Settings "
               "→ Exclusions.";
    case inUse:
        return "Something has this file open. Quitting the app that owns it and retrying usually "
               "works.";
    case readOnlyVolume:
        return "The disk this lives on is read-only.";
    case other:
        break;
    }
    return "Korvane left it alone rather than guess.";
}

bool fullDiskAccessCouldHelp(CleanupFailure::Kind kind) noexcept {
    return kind == CleanupFailure::Kind::permission;
}

std::string_view rawValue(CleanupSkip::Reason::Case reason) noexcept {
    using enum CleanupSkip::Reason::Case;
    switch (reason) {
    case removedWithParent:
        return "removedWithParent";
    case duplicateOfEarlierItem:
        return "duplicateOfEarlierItem";
    case alreadyGone:
        break;
    }
    return "alreadyGone";
}

std::string description(const CleanupSkip::Reason& reason) {
    using enum CleanupSkip::Reason::Case;
    switch (reason.reason) {
    case removedWithParent:
        return "removed with " +
               displayText(reason.parent ? reason.parent->lastPathComponent() : std::string_view());
    case duplicateOfEarlierItem:
        return "listed twice - handled once";
    case alreadyGone:
        break;
    }
    return "already gone before Korvane reached it";
}

RemovalErrorClass classifyRemovalError(int posixError) noexcept {
    using enum CleanupFailure::Kind;
    switch (posixError) {
    case EPERM:
    case EACCES:
        return {.alreadyGone = false, .kind = permission};
    case ENOENT:
        return {.alreadyGone = true, .kind = other};
    case EBUSY:
    case ETXTBSY:
        return {.alreadyGone = false, .kind = inUse};
    case EROFS:
        return {.alreadyGone = false, .kind = readOnlyVolume};
    default:
        return {.alreadyGone = false, .kind = other};
    }
}

} // namespace korvane
