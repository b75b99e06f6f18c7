#pragma once

#include "tests/updater/TestCertificates.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace korvane::testing {

/// One entry of a tar archive, well formed or not.
struct ArchiveEntry {
    std::string path;
    std::string content{};
    char type = '0'; ///< '0' file, '1' hard link, '2' link, '3' device, '5' folder, '6' pipe
    std::string target{};
    int mode = 0644;
};

[[nodiscard]] std::string tarArchive(const std::vector<ArchiveEntry>& entries);

/// A release in the making: Korvane.app with an Info.plist and a program, ready to be signed.
struct ReleaseArchive {
    explicit ReleaseArchive(const std::string& version);

    std::map<std::string, std::string> files; ///< below the bundle

    /// The manifest of what is there now.
    [[nodiscard]] std::string manifest() const;
    /// Adds the manifest, and its signature.
    void sign(const Credential& signer);
    /// The bundle as entries of an archive, each folder before what is in it.
    [[nodiscard]] std::vector<ArchiveEntry> entries() const;
};

} // namespace korvane::testing
