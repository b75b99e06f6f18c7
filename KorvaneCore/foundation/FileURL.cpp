#include "KorvaneCore/foundation/FileURL.h"

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/PercentCoding.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <deque>

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace korvane {

namespace {

/// Calls `visit` for each non-empty component between slashes, until it answers false.
template <typename Visitor>
void forEachName(std::string_view path, Visitor visit) {
    std::size_t start = 0;
    while (start <= path.size()) {
        const std::size_t slash = std::min(path.find('/', start), path.size());
        const std::string_view name = path.substr(start, slash - start);
        if (!name.empty() && !visit(name)) {
            return;
        }
        start = slash + 1;
    }
}

/// What a path in a URL may hold as it is, besides letters and digits.
constexpr std::string_view legalInPath = "-._~/!$&'()*+,=:@";

/// Whether the kernel finds the whole path without meeting a link: one call instead of one a
/// component, which is what almost every path needs. False also where the kernel cannot say.
bool existsWithoutLinks(const std::string& path) {
    open_how how{};
    how.flags = O_PATH | O_CLOEXEC;
    how.resolve = RESOLVE_NO_SYMLINKS;
    const FileDescriptor descriptor(
        static_cast<int>(syscall(SYS_openat2, AT_FDCWD, path.c_str(), &how, sizeof how)));
    return static_cast<bool>(descriptor);
}

std::optional<std::string> linkTarget(const std::string& path) {
    std::array<char, 4096> buffer{};
    const ssize_t length = readlink(path.c_str(), buffer.data(), buffer.size());
    if (length < 0 || static_cast<std::size_t>(length) == buffer.size()) {
        return std::nullopt;
    }
    return std::string(buffer.data(), static_cast<std::size_t>(length));
}

void removeLastName(std::string& path) {
    const std::size_t slash = path.rfind('/');
    path.resize(slash == std::string::npos ? 0 : slash);
}

} // namespace

FileURL::FileURL(std::string path) : path_(std::move(path)) {
    while (path_.size() > 1 && path_.back() == '/') {
        path_.pop_back();
    }
}

std::optional<FileURL> FileURL::fromAbsoluteString(std::string_view text) {
    constexpr std::string_view scheme = "file://";
    constexpr std::string_view host = "localhost";
    if (!text.starts_with(scheme)) {
        return std::nullopt;
    }
    text.remove_prefix(scheme.size());
    if (text.starts_with(host)) {
        text.remove_prefix(host.size());
    }
    if (!text.starts_with('/')) {
        return std::nullopt;
    }
    auto path = percentDecoded(text);
    const bool hasQuery = text.find_first_of("?#") != std::string_view::npos;
    if (!path || hasQuery || path->find('\0') != std::string::npos) {
        return std::nullopt;
    }
    return FileURL(std::move(*path));
}

std::string FileURL::absoluteString() const {
    return "file://" + percentCoded(path_, legalInPath);
}

std::vector<std::string> FileURL::pathComponents() const {
    std::vector<std::string> components;
    if (isAbsolute()) {
        components.emplace_back("/");
    }
    forEachName(path_, [&](std::string_view name) {
        components.emplace_back(name);
        return true;
    });
    return components;
}

std::size_t FileURL::componentCount() const noexcept {
    std::size_t count = isAbsolute() ? 1 : 0;
    forEachName(path_, [&](std::string_view) {
        ++count;
        return true;
    });
    return count;
}

bool FileURL::hasParentTraversal() const noexcept {
    bool found = false;
    forEachName(path_, [&](std::string_view name) {
        found = name == "..";
        return !found;
    });
    return found;
}

std::string_view FileURL::lastPathComponent() const noexcept {
    if (path_ == "/") {
        return path_;
    }
    const std::size_t slash = path_.rfind('/');
    return slash == std::string::npos ? std::string_view(path_)
                                      : std::string_view(path_).substr(slash + 1);
}

std::string_view FileURL::pathExtension() const noexcept {
    const std::string_view name = lastPathComponent();
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == name.size()) {
        return {};
    }
    return name.substr(dot + 1);
}

FileURL FileURL::appending(std::string_view component) const {
    std::string path;
    path.reserve(path_.size() + 1 + component.size());
    path += path_;
    if (!path.ends_with('/')) {
        path += '/';
    }
    path += component;
    return FileURL(std::move(path));
}

FileURL FileURL::deletingLastPathComponent() const {
    return FileURL(std::string(path_ == "/" ? path_ : parentPath(path_)));
}

FileURL FileURL::standardized() const {
    const bool plain = path_.find("//") == std::string::npos &&
                       path_.find("/.") == std::string::npos && !path_.starts_with('.');
    if (plain) {
        return *this;
    }
    std::vector<std::string_view> kept;
    const bool absolute = isAbsolute();
    forEachName(path_, [&](std::string_view name) {
        if (name == "..") {
            if (!kept.empty() && kept.back() != "..") {
                kept.pop_back();
            } else if (!absolute) {
                kept.push_back(name);
            }
        } else if (name != ".") {
            kept.push_back(name);
        }
        return true;
    });
    std::string path;
    for (const std::string_view name : kept) {
        if (absolute || !path.empty()) {
            path += '/';
        }
        path += name;
    }
    return FileURL(path.empty() && absolute ? "/" : std::move(path));
}

FileURL FileURL::resolvingSymlinks() const {
    if (!isAbsolute()) {
        return standardized();
    }
    // ".." must be taken after the link before it was followed, so the path is not standardised
    // first; a path with ".." therefore never takes the short way.
    if (!hasParentTraversal() && existsWithoutLinks(path_)) {
        return standardized();
    }
    constexpr int linkLimit = 64; // the kernel gives up after 40
    int links = 0;
    std::string resolved;
    std::deque<std::string> pending;
    forEachName(path_, [&](std::string_view name) {
        pending.emplace_back(name);
        return true;
    });
    while (!pending.empty()) {
        const std::string name = std::move(pending.front());
        pending.pop_front();
        if (name == ".") {
            continue;
        }
        if (name == "..") {
            removeLastName(resolved);
            continue;
        }
        std::string candidate = resolved;
        candidate += '/';
        candidate += name;
        const auto target = links < linkLimit ? linkTarget(candidate) : std::nullopt;
        if (!target) {
            resolved = std::move(candidate);
            continue;
        }
        ++links;
        if (target->starts_with('/')) {
            resolved.clear();
        }
        std::size_t position = 0;
        forEachName(*target, [&](std::string_view part) {
            pending.emplace(pending.begin() + static_cast<std::ptrdiff_t>(position++), part);
            return true;
        });
    }
    return FileURL(resolved.empty() ? "/" : std::move(resolved));
}

std::string_view parentPath(std::string_view path) noexcept {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) {
        return {};
    }
    if (slash == 0) {
        return path.size() > 1 ? path.substr(0, 1) : std::string_view();
    }
    return path.substr(0, slash);
}

std::string expandingTilde(std::string_view path, const FileURL& home) {
    if (path == "~") {
        return home.path();
    }
    if (path.starts_with("~/")) {
        return (home.path() == "/" ? std::string() : home.path()) + std::string(path.substr(1));
    }
    return std::string(path);
}

} // namespace korvane
