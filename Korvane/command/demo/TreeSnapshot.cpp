#include "Korvane/command/demo/TreeSnapshot.h"

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Hashing.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/scan/FileSystemWalker.h"

#include <cerrno>
#include <filesystem>

namespace korvane {

namespace {

std::string fingerprint(const WalkEntry& entry) {
    if (entry.isSymlink) {
        return "link to " + std::filesystem::read_symlink(entry.url.path()).string();
    }
    if (entry.isDirectory) {
        return "folder";
    }
    const auto content = readFile(entry.url);
    if (!content) {
        throw FileError(ENOENT, "read", entry.url.path());
    }
    SHA256 hash;
    hash.update(std::as_bytes(std::span(*content)));
    return "file " + hexText(hash.finish());
}

} // namespace

TreeSnapshot takeSnapshot(const FileURL& root, const std::set<FileURL>& leftOut) {
    TreeSnapshot snapshot;
    WalkOptions options;
    options.includeHidden = true;
    const WalkSummary summary =
        FileSystemWalker(options).walk(root, nullptr, [&](const WalkEntry& entry) {
            if (leftOut.contains(entry.url)) {
                return WalkDecision::skipDescendants;
            }
            snapshot.emplace(entry.url.path(), fingerprint(entry));
            return WalkDecision::proceed;
        });
    if (!summary.errors.empty()) {
        throw FileError(EIO, "read", summary.errors.front().url.path());
    }
    return snapshot;
}

std::vector<std::string> differences(const TreeSnapshot& before, const TreeSnapshot& after) {
    std::vector<std::string> paths;
    for (const auto& [path, mark] : before) {
        const auto found = after.find(path);
        if (found == after.end() || found->second != mark) {
            paths.push_back(path);
        }
    }
    for (const auto& [path, mark] : after) {
        if (!before.contains(path)) {
            paths.push_back(path);
        }
    }
    return paths;
}

} // namespace korvane
