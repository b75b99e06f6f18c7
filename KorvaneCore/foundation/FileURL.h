#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// The location of a file or folder on this computer. Holds the bytes of the path as the kernel
/// gave them or the user typed them, without the trailing slashes (which would let the kernel turn
/// a link into its target). Nothing but `resolvingSymlinks` touches the disk.
class FileURL {
  public:
    FileURL() = default;
    explicit FileURL(std::string path);

    /// Reads "file:///a%20b" or "file://localhost/a". Empty when the text is no URL of a local
    /// absolute path: another scheme or host, a query or fragment, a bad escape, a NUL byte.
    [[nodiscard]] static std::optional<FileURL> fromAbsoluteString(std::string_view text);

    /// "file://" and the path, percent-coded (unreserved characters, "/" and the sub-delimiters
    /// that are legal in a path stay); pure ASCII, whatever the bytes. `fromAbsoluteString` of it
    /// gives back an equal value.
    [[nodiscard]] std::string absoluteString() const;

    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    [[nodiscard]] bool isAbsolute() const noexcept { return path_.starts_with('/'); }

    /// "/" first for an absolute path, then the names between slashes; "." and ".." are kept.
    [[nodiscard]] std::vector<std::string> pathComponents() const;

    /// The number of `pathComponents()`, without making them.
    [[nodiscard]] std::size_t componentCount() const noexcept;

    /// True when a component of the path, as given, is "..".
    [[nodiscard]] bool hasParentTraversal() const noexcept;

    /// The last name; "/" for the root, empty for an empty path.
    [[nodiscard]] std::string_view lastPathComponent() const noexcept;

    /// The text after the last dot of the last name, without the dot. Empty for ".bashrc" (a
    /// leading dot starts no extension) and for "name." (a trailing dot belongs to the base name).
    [[nodiscard]] std::string_view pathExtension() const noexcept;

    [[nodiscard]] FileURL appending(std::string_view component) const;

    /// The folder that holds this item; the root's parent is the root.
    [[nodiscard]] FileURL deletingLastPathComponent() const;

    /// "." and empty components dropped, ".." taken with the component before it. Lexical.
    [[nodiscard]] FileURL standardized() const;

    /// Links along the path resolved on disk, the last component included. A tail that does not
    /// exist is kept as it stands behind the resolved part; a cycle of links leaves the rest as it
    /// is. The result is standardised.
    [[nodiscard]] FileURL resolvingSymlinks() const;

    friend auto operator<=>(const FileURL&, const FileURL&) = default;

  private:
    std::string path_;
};

/// `path` without its last component: what comes before the last "/", "/" for an item directly in
/// the root, empty for a path without "/" and for the root's own empty rest. Views into `path`.
[[nodiscard]] std::string_view parentPath(std::string_view path) noexcept;

/// A leading "~" (alone or before "/") replaced by `home`; everything else is kept as it is.
[[nodiscard]] std::string expandingTilde(std::string_view path, const FileURL& home);

} // namespace korvane

template <>
struct std::hash<korvane::FileURL> {
    std::size_t operator()(const korvane::FileURL& url) const noexcept {
        return std::hash<std::string>{}(url.path());
    }
};
