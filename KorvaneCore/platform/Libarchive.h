#pragma once

#include <archive.h>
#include <archive_entry.h>

namespace korvane {

/// What is used of libarchive, for reading. Loaded when the first archive is opened.
struct Libarchive {
    decltype(&::archive_read_new) readNew = nullptr;
    decltype(&::archive_read_free) readFree = nullptr;
    decltype(&::archive_read_support_format_tar) supportTar = nullptr;
    decltype(&::archive_read_support_filter_gzip) supportGzip = nullptr;
    decltype(&::archive_read_support_filter_zstd) supportZstd = nullptr;
    decltype(&::archive_read_open_fd) openDescriptor = nullptr;
    decltype(&::archive_read_next_header) nextHeader = nullptr;
    decltype(&::archive_read_data) readData = nullptr;
    decltype(&::archive_entry_pathname) pathname = nullptr;
    decltype(&::archive_entry_filetype) fileType = nullptr;
    decltype(&::archive_entry_perm) permissions = nullptr;
    decltype(&::archive_entry_symlink) symlink = nullptr;
    decltype(&::archive_entry_hardlink) hardlink = nullptr;

    /// Null when the library is not installed. Any thread; never unloaded.
    [[nodiscard]] static const Libarchive* shared();
};

} // namespace korvane
