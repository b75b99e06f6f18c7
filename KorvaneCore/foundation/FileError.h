#pragma once

#include <string>
#include <string_view>
#include <system_error>

namespace korvane {

/// A file-system operation that failed. `code()` holds the POSIX error, `path()` the bytes of the
/// path concerned, `reason()` a sentence fit for a user ("Could not remove /x: Permission denied").
/// Control characters and bytes that are not UTF-8 are escaped in the sentence.
class FileError : public std::system_error {
  public:
    /// `action` completes "Could not …", for example "remove" or "create the folder".
    FileError(int posixError, std::string_view action, const std::string& path);

    /// As above with a sentence of the caller's own, for failures that errno describes badly.
    FileError(int posixError, std::string sentence, std::string_view action, std::string path);

    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    [[nodiscard]] const std::string& reason() const noexcept { return reason_; }
    [[nodiscard]] int posixError() const noexcept { return code().value(); }

  private:
    std::string path_;
    std::string reason_;
};

/// The sentence to show for any exception of this program: the reason of a `FileError`, else
/// what().
[[nodiscard]] std::string localizedDescription(const std::exception& error);

/// The system's text for an error number ("Permission denied"). Safe to call from any thread.
[[nodiscard]] std::string errorText(int posixError);

} // namespace korvane
