#pragma once

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/FolderFacts.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace korvane {

/// Where an item is, for a program that will be given its path later and with more rights than the
/// user has: says whether nobody but root and the user can lead that path elsewhere, and tells
/// afterwards whether it still leads to the same thing. Nothing is read but names. Any thread.
class HeldPlace {
  public:
    /// Why the path cannot be relied on.
    enum class Trouble : std::uint8_t {
        link,       ///< a folder above the item is a link
        others,     ///< somebody else may rename a folder on the path, or the item
        mount,      ///< a file system is mounted on the item or inside it
        unreadable, ///< the folders above the item could not be looked at
    };

    /// Looks at every folder from the root down, opening none through a link. Something that is not
    /// there is no trouble. `neighbour` shares its descriptor when it is in the same folder.
    [[nodiscard]] static HeldPlace look(const FileURL& item, const HeldPlace* neighbour = nullptr);

    [[nodiscard]] std::optional<Trouble> trouble() const noexcept { return trouble_; }
    /// Whether there was an item.
    [[nodiscard]] bool exists() const noexcept { return object_.has_value(); }

    /// Looks again: whether the path is still without trouble, leads to the same folder, and there
    /// to the same item or to nothing any more.
    [[nodiscard]] bool isUnchanged() const;

  private:
    /// The birth time tells a new object from an old one that had its number.
    struct Object {
        FileIdentity identity;
        std::uint32_t type = 0;
        std::int64_t bornSeconds = 0;
        std::uint32_t bornNanoseconds = 0;
        friend bool operator==(const Object&, const Object&) = default;
    };

    explicit HeldPlace(FileURL item) : item_(std::move(item)) {}
    void walk();
    bool enter(FileDescriptor& folder, bool& othersWrite, const std::string& name);
    void lookAtItem(int folder, bool othersWrite);

    FileURL item_; ///< standardised
    std::optional<Trouble> trouble_;
    /// The item's folder, held so that no other one can get its number; empty: it was not there.
    std::shared_ptr<const FileDescriptor> folder_;
    std::optional<FileIdentity> folderIdentity_;
    std::optional<Object> object_;
};

} // namespace korvane
