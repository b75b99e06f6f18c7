#pragma once

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/FileURL.h"

#include <string>
#include <vector>

namespace korvane {

/// A private temporary file of paths, separated by NUL bytes, for a program that reads it by name.
/// Only this user may read or write it; it is removed with this object. Not shared between threads.
class PathListFile {
  public:
    /// Makes "korvane-privileged-<UUID>" in the folder, holding nothing. Throws FileError; also
    /// when another user could put a file of his own in its place.
    explicit PathListFile(const FileURL& temporaryFolder);
    ~PathListFile();
    PathListFile(const PathListFile&) = delete;
    PathListFile& operator=(const PathListFile&) = delete;

    [[nodiscard]] const FileURL& url() const noexcept { return url_; }

    /// Makes these paths its whole content, through the descriptor held since it was made. Throws
    /// FileError; also when the name does not lead to this file any more.
    void write(const std::vector<FileURL>& items) const;

  private:
    void requireItsName() const;

    FileURL url_;
    FileDescriptor file_;
};

} // namespace korvane
