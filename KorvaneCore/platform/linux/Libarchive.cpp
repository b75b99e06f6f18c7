#include "KorvaneCore/platform/Libarchive.h"

#include "KorvaneCore/platform/linux/LibrarySymbols.h"

#include <optional>

namespace korvane {

namespace {

std::optional<Libarchive> load() {
    void* library = dlopen("libarchive.so.13", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        return std::nullopt;
    }
    LibrarySymbols symbols(library);
    Libarchive api;
    symbols.find("archive_read_new", api.readNew);
    symbols.find("archive_read_free", api.readFree);
    symbols.find("archive_read_support_format_tar", api.supportTar);
    symbols.find("archive_read_support_filter_gzip", api.supportGzip);
    symbols.find("archive_read_support_filter_zstd", api.supportZstd);
    symbols.find("archive_read_open_fd", api.openDescriptor);
    symbols.find("archive_read_next_header", api.nextHeader);
    symbols.find("archive_read_data", api.readData);
    symbols.find("archive_entry_pathname", api.pathname);
    symbols.find("archive_entry_filetype", api.fileType);
    symbols.find("archive_entry_perm", api.permissions);
    symbols.find("archive_entry_symlink", api.symlink);
    symbols.find("archive_entry_hardlink", api.hardlink);
    return symbols.complete() ? std::optional(api) : std::nullopt;
}

} // namespace

const Libarchive* Libarchive::shared() {
    static const std::optional<Libarchive> api = load();
    return api ? &*api : nullptr;
}

} // namespace korvane
