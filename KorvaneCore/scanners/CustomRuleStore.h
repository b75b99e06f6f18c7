#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/scanners/CustomRule.h"

#include <span>
#include <string_view>
#include <vector>

namespace korvane {

/// The file of the user's own rules, a JSON array. Read afresh each time: people edit it by hand.
/// Changes by several processes at once are all kept. Any thread.
class CustomRuleStore {
  public:
    explicit CustomRuleStore(FileURL file) : file_(std::move(file)) {}

    [[nodiscard]] const FileURL& file() const noexcept { return file_; }

    /// None when there is no file. Throws DecodingError that says where the file is wrong,
    /// FileError when it cannot be read. No change is ever made to a file that does not decode.
    [[nodiscard]] std::vector<CustomRule> load() const;

    /// Appends the rules whose ids are not there yet, and answers those. Throws as `load` does.
    std::vector<CustomRule> add(std::span<const CustomRule> rules) const;

    /// False when there is no rule of this id. Throws as `load` does.
    [[nodiscard]] bool remove(std::string_view id) const;

  private:
    void save(const std::vector<CustomRule>& rules) const;

    FileURL file_;
};

} // namespace korvane
