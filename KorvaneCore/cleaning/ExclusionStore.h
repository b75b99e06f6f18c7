#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/foundation/UUID.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

struct ItemLocation;

/// One path that the user protects.
struct Exclusion {
    UUID id = UUID::random();
    std::string path; ///< as given; may begin with "~"
    std::string note; ///< may be empty

    friend bool operator==(const Exclusion&, const Exclusion&) = default;
};

/// How a URL meets the list; `root` is the exclusion's path as stored.
struct ExclusionMatch {
    enum class Case { exact, inside, contains };
    Case match = Case::exact;
    std::string root;

    /// The sentence shown to the user; the path in it is escaped for display.
    [[nodiscard]] std::string message() const;
    friend bool operator==(const ExclusionMatch&, const ExclusionMatch&) = default;
};

[[nodiscard]] std::string_view rawValue(ExclusionMatch::Case match) noexcept;

/// The user's protected paths: kept as a JSON file, asked about every item before it is removed.
/// Any thread; changes by several processes at once are all kept.
class ExclusionStore {
  public:
    /// Loads the list; a missing or unreadable file makes an empty one and is left as it is.
    ExclusionStore(FileURL fileURL, FileURL home);

    [[nodiscard]] const FileURL& fileURL() const noexcept { return fileURL_; }
    [[nodiscard]] std::vector<Exclusion> items() const;

    /// Appends and persists; memory and file change together or not at all. What another process
    /// changed since is kept. Throws FileError.
    void add(const Exclusion& exclusion);
    /// Removes and persists in the same way; false when the list has no such id, then no file is
    /// written.
    bool remove(const UUID& id);

    [[nodiscard]] std::optional<ExclusionMatch> match(const FileURL& url) const;
    /// As above when the location was worked out already.
    [[nodiscard]] std::optional<ExclusionMatch> match(const ItemLocation& location) const;
    /// On the list or inside something on it.
    [[nodiscard]] bool isExcluded(const FileURL& url) const;
    /// Any match: removing it would remove something protected.
    [[nodiscard]] bool blocks(const FileURL& url) const;

  private:
    /// The matching form of one exclusion.
    struct Root {
        std::string display;
        std::vector<std::string> keys;
        std::vector<std::string> prefixes; ///< what the keys of everything inside begin with
        std::size_t depth = 0;
    };
    using Roots = std::vector<Root>;

    [[nodiscard]] std::shared_ptr<const Roots> roots() const;
    [[nodiscard]] std::vector<Exclusion> newestItems() const;
    void save(const std::vector<Exclusion>& items) const;
    void adopt(std::vector<Exclusion> items);

    FileURL fileURL_;
    FileURL home_;
    mutable std::mutex lock_;
    std::vector<Exclusion> items_;
    std::shared_ptr<const Roots> roots_;
};

} // namespace korvane
