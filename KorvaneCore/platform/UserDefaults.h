#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/foundation/Json.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// The user's preferences: a flat JSON object of "korvane.…" keys with text, number or boolean
/// values. Reads the file afresh each time, so that a change by another process is seen; keys that
/// it does not know stay. Any thread.
class UserDefaults {
  public:
    /// `file` is usually `<configuration>/Korvane/defaults.json`.
    explicit UserDefaults(FileURL file);

    /// The value as text; nothing when the key or the file is missing or is not of that form.
    [[nodiscard]] std::optional<std::string> string(std::string_view key) const;

    /// All keys with their values; empty when there is no readable file.
    [[nodiscard]] Json all() const;

    /// Stores one value under a lock between processes, atomically. A file that is no JSON object
    /// is not overwritten: throws DecodingError; throws FileError when it cannot be written.
    void set(std::string_view key, const Json& value);

    [[nodiscard]] const FileURL& fileURL() const noexcept { return file_; }

  private:
    FileURL file_;
    mutable std::mutex lock_;
};

} // namespace korvane
