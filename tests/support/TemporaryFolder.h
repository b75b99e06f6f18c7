#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace korvane::testing {

/// A fresh real folder for one test, removed with everything in it at the end. Relative names are
/// taken from it; missing parents are made. Failures of the set-up throw std::system_error.
class TemporaryFolder {
  public:
    TemporaryFolder();
    /// On the file system of `parent` instead of the temporary one.
    explicit TemporaryFolder(const std::string& parent);
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const FileURL& url() const noexcept { return url_; }
    [[nodiscard]] const std::string& path() const noexcept { return url_.path(); }
    [[nodiscard]] FileURL at(std::string_view name) const;

    FileURL makeFolder(std::string_view name) const;
    FileURL makeFile(std::string_view name, std::string_view content = "x") const;
    FileURL makeFileOfSize(std::string_view name, std::size_t bytes) const;
    FileURL makeLink(std::string_view name, std::string_view target) const;
    /// Sets the modification date.
    void setModified(std::string_view name, double unixSeconds) const;

    [[nodiscard]] bool exists(std::string_view name) const; ///< a dangling link exists too
    [[nodiscard]] std::string content(std::string_view name) const;
    /// Names of everything below `name`, relative, sorted; folders end in "/", links in "@".
    [[nodiscard]] std::vector<std::string> listing(std::string_view name = "") const;

  private:
    FileURL url_;
};

} // namespace korvane::testing
