#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// The files of a log folder as lines of bytes: "audit-….jsonl", one a day, in the order of their
/// names. Lines are only ever added. Links and special files of such a name are no log files.
/// Callers hold the locks.
class AuditLogFiles {
  public:
    explicit AuditLogFiles(FileURL folder);

    /// Every line that is not empty, in file order. What cannot be read is left out.
    void forEachLine(const std::function<void(std::string_view)>& visit) const;

    /// The last line that is not empty of the newest file, found from its end; nothing when there
    /// is none or the file cannot be read.
    [[nodiscard]] std::optional<std::string> lastLine() const;

    /// Adds a line (given without its line feed) to a file, durably. A new file is there with its
    /// line or not at all; a last line without a line feed gets one first, whatever it holds.
    /// Throws FileError; a link or special file in the place is one.
    void append(const std::string& name, std::string_view line) const;

  private:
    FileURL folder_;
};

} // namespace korvane
