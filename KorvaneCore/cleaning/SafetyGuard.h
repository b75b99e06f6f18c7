#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace korvane {

struct ItemLocation;

/// The last, fixed line of defence: says of a path whether it may be removed at all. Refuses the
/// root, system locations, the home folder with its well-known and its immediate folders, and
/// everything that contains one of those. Immutable once built; any thread.
class SafetyGuard {
  public:
    enum class BlockReason {
        filesystemRoot,
        protectedLocation,
        protectedAncestor,
        pathTraversal,
        emptyPath,
    };

    /// Allowed, or blocked for a reason.
    class Decision {
      public:
        static Decision allowed() { return Decision(std::nullopt); }
        static Decision blocked(BlockReason reason) { return Decision(reason); }
        [[nodiscard]] bool isAllowed() const noexcept { return !reason_.has_value(); }
        [[nodiscard]] std::optional<BlockReason> reason() const noexcept { return reason_; }
        friend bool operator==(const Decision&, const Decision&) = default;

      private:
        explicit Decision(std::optional<BlockReason> reason) : reason_(reason) {}
        std::optional<BlockReason> reason_;
    };

    /// Lists the home folder once; folders made in it later are not covered until a new guard is
    /// built. Never fails.
    explicit SafetyGuard(const FileURL& homeDirectory);

    /// A path that names no place (empty, relative, or with a NUL byte in it) counts as empty.
    [[nodiscard]] Decision evaluate(const FileURL& url) const;
    /// As above when the location was worked out already.
    [[nodiscard]] Decision evaluate(const ItemLocation& location) const;
    [[nodiscard]] bool allows(const FileURL& url) const { return evaluate(url).isAllowed(); }
    [[nodiscard]] const FileURL& homeDirectory() const noexcept { return homeDirectory_; }

  private:
    /// Device and inode: two paths of one folder have the same, however it was mounted or spelled.
    using Identity = std::pair<std::uint64_t, std::uint64_t>;

    [[nodiscard]] static std::optional<Identity> identityOf(const FileURL& url);
    [[nodiscard]] std::optional<BlockReason> judgeKeys(const std::vector<std::string>& keys) const;
    [[nodiscard]] std::optional<BlockReason> judgeIdentity(const ItemLocation& location) const;
    void protect(const FileURL& url);
    void protectImmediateFolders();
    void rememberAncestors(const FileURL& url);

    FileURL homeDirectory_;
    std::vector<std::string> protectedKeys_; // sorted, unique
    std::set<Identity> protectedIdentities_; // the protected folders that exist
    std::set<Identity> ancestorIdentities_;  // the folders above them
};

/// The phrase shown to the user ("the filesystem root").
[[nodiscard]] std::string_view rawValue(SafetyGuard::BlockReason reason) noexcept;
[[nodiscard]] std::optional<SafetyGuard::BlockReason>
blockReasonFromRawValue(std::string_view text) noexcept;
/// "refusing to delete " and the phrase.
[[nodiscard]] std::string message(SafetyGuard::BlockReason reason);

} // namespace korvane
