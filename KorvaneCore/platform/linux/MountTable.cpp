#include "KorvaneCore/platform/linux/MountTable.h"

#include "KorvaneCore/foundation/Text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <fmt/format.h>

namespace korvane {

namespace {

/// The kernel writes blanks, tabs, line feeds and backslashes of a path as three octal digits.
std::string unescaped(std::string_view text) {
    const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    std::string path;
    path.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size() && isOctal(text[i + 1]) &&
            isOctal(text[i + 2]) && isOctal(text[i + 3])) {
            path += static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 +
                                      (text[i + 3] - '0'));
            i += 3;
        } else {
            path += text[i];
        }
    }
    return path;
}

std::string_view takeUntil(std::string_view& text, char separator) {
    const std::size_t end = std::min(text.find(separator), text.size());
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return taken;
}

bool hasChanged(int file) {
    pollfd request{file, POLLPRI, 0};
    return poll(&request, 1, 0) != 0;
}

} // namespace

std::vector<MountTable::Mount> MountTable::parse(std::string_view text) {
    std::vector<Mount> mounts;
    while (!text.empty()) {
        std::string_view line = takeUntil(text, '\n');
        Mount mount;
        const std::string_view id = takeUntil(line, ' ');
        const auto number = std::from_chars(id.data(), id.data() + id.size(), mount.id);
        takeUntil(line, ' '); // parent
        takeUntil(line, ' '); // device
        takeUntil(line, ' '); // root of the mount within its file system
        mount.path = unescaped(takeUntil(line, ' '));
        if (number.ec == std::errc() && mount.path.starts_with('/')) {
            mounts.push_back(std::move(mount));
        }
    }
    return mounts;
}

std::optional<MountTable::Mount> MountTable::find(std::uint64_t id) {
    const std::lock_guard guard(lock_);
    refresh("/proc/self/mountinfo", ItemAction::trash);
    const auto found =
        std::find_if(mounts_.begin(), mounts_.end(), [&](const Mount& m) { return m.id == id; });
    return found == mounts_.end() ? std::nullopt : std::optional(*found);
}

void MountTable::refuseMountsWithin(const std::string& path, ItemAction action) {
    const std::lock_guard guard(lock_);
    refresh(path, action);
    for (const Mount& mount : mounts_) {
        if (!mount.path.starts_with(path)) {
            continue;
        }
        if (mount.path.size() == path.size()) {
            throw itemError(action, EXDEV, path, "another file system is mounted there");
        }
        if (mount.path[path.size()] == '/') {
            throw itemError(action, EXDEV, path,
                            fmt::format("another file system is mounted inside it, at {}",
                                        displayText(mount.path)));
        }
    }
}

void MountTable::refresh(const std::string& path, ItemAction action) {
    const bool isFirst = !file_;
    if (isFirst) {
        file_ = FileDescriptor(open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC));
    }
    if (!file_ || ((isFirst || hasChanged(file_.get())) && !read())) {
        file_.reset();
        throw itemError(action, EXDEV, path, "the list of mounted file systems could not be read");
    }
}

bool MountTable::read() {
    // A table that changes while it is read may come torn, so it is read until it stayed the same.
    constexpr int attempts = 100;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        std::string text;
        std::array<char, 16384> buffer{};
        ssize_t count = lseek(file_.get(), 0, SEEK_SET) == 0 ? 1 : -1;
        while (count > 0) {
            count = ::read(file_.get(), buffer.data(), buffer.size());
            text.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        }
        if (count < 0) {
            return false;
        }
        if (!hasChanged(file_.get())) {
            mounts_ = parse(text);
            return true;
        }
    }
    return false;
}

} // namespace korvane
