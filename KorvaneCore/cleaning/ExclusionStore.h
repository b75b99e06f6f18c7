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

    /// Append or remove and persist; memory and file change together or not at all. Throw FileError.
    void add(const Exclusion& exclusion);
    /// False when there is no such id; then nothing changes.
    bool remove(const UUID& id);

    [[nodiscard]] std::optional<ExclusionMatch> match(const FileURL& url) const;
    /// On the list or inside something on it.
    [[nodiscard]] bool isExcluded(const FileURL& url) const;
    /// Any match: removing it would remove something protected.
    [[nodiscard]] bool blocks(const FileURL& url) const;

  private:
    struct Root {
        std::string display;
        std::vector<std::string> keys;
        std::size_t depth = 0;
    };
    using Roots = std::vector<Root>;

    void rebuildRoots();

    FileURL fileURL_;
    FileURL home_;
    mutable std::mutex lock_;
    std::vector<Exclusion> items_;
    std::shared_ptr<const Roots> roots_;
};

} // namespace korvane
