#pragma once

#include "KorvaneCore/platform/SoftwareInventory.h"

#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>

namespace korvane {

/// Everything that installed applications may call a folder of theirs. Answers generously: a folder
/// taken for an installed application's stays, which costs space; the opposite would cost someone
/// their data. Immutable; any thread.
class InstalledNames {
  public:
    explicit InstalledNames(std::span<const InstalledApplication> applications);

    /// Whether an installed application may have made a folder of this name.
    [[nodiscard]] bool mayOwn(std::string_view folderName) const;

    /// As `mayOwn`, for a folder that applications of one maker share.
    [[nodiscard]] bool mayShare(std::string_view folderName) const;

    /// Whether an installed application goes by this very name, whatever stands between words.
    [[nodiscard]] bool isKnown(std::string_view fileName) const;

  private:
    void add(std::string_view text);
    [[nodiscard]] bool hasIdentifierLike(const std::string& key) const;
    [[nodiscard]] bool hasNameLike(std::string_view key) const;

    std::set<std::string> identifiers_; ///< in lower case
    std::set<std::string> names_;       ///< squashed, those of makers among them
    std::unordered_set<std::string> families_;
};

} // namespace korvane
