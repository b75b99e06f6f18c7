#pragma once

#include "KorvaneCore/scan/FileSystemWalker.h"
#include "tests/support/TemporaryFolder.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace korvane::testing {

/// A walk written down: "depth path", the path relative to the root, "/" behind a folder, "@"
/// behind a link; then the errors as "!path: text".
struct Walked {
    std::vector<std::string> lines;
    WalkSummary summary;
    std::int64_t fileBytes = 0;
};

inline Walked walked(const FileURL& root, const WalkOptions& options = {}) {
    Walked result;
    const auto relative = [&](const FileURL& url) {
        return url == root ? "." : url.path().substr(root.path().size() + 1);
    };
    result.summary = FileSystemWalker(options).walk(root, nullptr, [&](const WalkEntry& entry) {
        result.lines.push_back(std::to_string(entry.depth) + " " + relative(entry.url) +
                               (entry.isDirectory ? "/" : "") + (entry.isSymlink ? "@" : ""));
        if (!entry.isDirectory && !entry.isSymlink) {
            result.fileBytes += entry.sizeBytes;
        }
        return WalkDecision::proceed;
    });
    for (const WalkError& error : result.summary.errors) {
        result.lines.push_back("!" + relative(error.url) + ": " + error.underlying);
    }
    return result;
}

/// Sizing goes its own way through the tree and must come to what a walk comes to.
inline void expectTotalAgrees(const FileURL& root, const WalkOptions& options, const Walked& walk) {
    const auto [total, summary] = FileSystemWalker(options).totalSize(root);
    EXPECT_EQ(total, walk.fileBytes);
    EXPECT_EQ(summary, walk.summary);
}

inline std::size_t openDescriptors() {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry :
         std::filesystem::directory_iterator("/proc/self/fd")) {
        ++count;
    }
    return count;
}

/// Takes root's rights over files from this thread, so that unreadable folders are unreadable.
class WithoutPrivileges {
  public:
    WithoutPrivileges() {
        if (geteuid() == 0) {
            setfsuid(nobody);
        }
    }
    ~WithoutPrivileges() { setfsuid(geteuid()); }
    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

    /// Hands a test's folder over, rights of the items in it included. False when the folders
    /// above it would not let anyone else in.
    static bool own(const TemporaryFolder& folder) {
        if (geteuid() != 0) {
            return true;
        }
        bool owned = lchown(folder.path().c_str(), nobody, nobody) == 0;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
            owned = owned && lchown(entry.path().c_str(), nobody, nobody) == 0;
        }
        const WithoutPrivileges guard;
        return owned && std::filesystem::exists(folder.path());
    }

  private:
    static constexpr uid_t nobody = 65534;
};

} // namespace korvane::testing
