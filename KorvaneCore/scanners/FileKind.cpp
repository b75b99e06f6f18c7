#include "KorvaneCore/scanners/FileKind.h"

#include "KorvaneCore/foundation/Text.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>

namespace korvane {

namespace {

struct Extension {
    std::string_view text;
    FileKind kind;
};

// clang-format off
// Sorted, so that it can be searched by halves.
constexpr std::array extensions{
    Extension{"3gp", FileKind::video},      Extension{"7z", FileKind::archive},
    Extension{"aac", FileKind::audio},      Extension{"aif", FileKind::audio},
    Extension{"aiff", FileKind::audio},     Extension{"apk", FileKind::app},
    Extension{"appimage", FileKind::app},   Extension{"avi", FileKind::video},
    Extension{"avif", FileKind::picture},   Extension{"bmp", FileKind::picture},
    Extension{"bz2", FileKind::archive},    Extension{"csv", FileKind::document},
    Extension{"deb", FileKind::app},        Extension{"djvu", FileKind::document},
    Extension{"dmg", FileKind::diskImage},  Extension{"doc", FileKind::document},
    Extension{"docx", FileKind::document},  Extension{"epub", FileKind::document},
    Extension{"exe", FileKind::app},        Extension{"flac", FileKind::audio},
    Extension{"flatpak", FileKind::app},    Extension{"flatpakref", FileKind::app},
    Extension{"flv", FileKind::video},      Extension{"gif", FileKind::picture},
    Extension{"gz", FileKind::archive},     Extension{"heic", FileKind::picture},
    Extension{"heif", FileKind::picture},   Extension{"htm", FileKind::document},
    Extension{"html", FileKind::document},  Extension{"img", FileKind::diskImage},
    Extension{"ipa", FileKind::app},        Extension{"iso", FileKind::diskImage},
    Extension{"jar", FileKind::app},        Extension{"jpeg", FileKind::picture},
    Extension{"jpg", FileKind::picture},    Extension{"key", FileKind::document},
    Extension{"lz4", FileKind::archive},    Extension{"m4a", FileKind::audio},
    Extension{"m4v", FileKind::video},      Extension{"md", FileKind::document},
    Extension{"mkv", FileKind::video},      Extension{"mobi", FileKind::document},
    Extension{"mov", FileKind::video},      Extension{"mp3", FileKind::audio},
    Extension{"mp4", FileKind::video},      Extension{"mpeg", FileKind::video},
    Extension{"mpg", FileKind::video},      Extension{"mpkg", FileKind::app},
    Extension{"msi", FileKind::app},        Extension{"numbers", FileKind::document},
    Extension{"odp", FileKind::document},   Extension{"ods", FileKind::document},
    Extension{"odt", FileKind::document},   Extension{"ogg", FileKind::audio},
    Extension{"ogv", FileKind::video},      Extension{"opus", FileKind::audio},
    Extension{"pages", FileKind::document}, Extension{"pdf", FileKind::document},
    Extension{"pkg", FileKind::app},        Extension{"png", FileKind::picture},
    Extension{"ppt", FileKind::document},   Extension{"pptx", FileKind::document},
    Extension{"psd", FileKind::picture},    Extension{"qcow2", FileKind::diskImage},
    Extension{"rar", FileKind::archive},    Extension{"raw", FileKind::picture},
    Extension{"rpm", FileKind::app},        Extension{"rtf", FileKind::document},
    Extension{"run", FileKind::app},        Extension{"snap", FileKind::app},
    Extension{"sparsebundle", FileKind::diskImage},
    Extension{"sparseimage", FileKind::diskImage},
    Extension{"svg", FileKind::picture},    Extension{"tar", FileKind::archive},
    Extension{"tgz", FileKind::archive},    Extension{"tif", FileKind::picture},
    Extension{"tiff", FileKind::picture},   Extension{"txt", FileKind::document},
    Extension{"vdi", FileKind::diskImage},  Extension{"vhd", FileKind::diskImage},
    Extension{"vhdx", FileKind::diskImage}, Extension{"vmdk", FileKind::diskImage},
    Extension{"wav", FileKind::audio},      Extension{"webm", FileKind::video},
    Extension{"webp", FileKind::picture},   Extension{"wma", FileKind::audio},
    Extension{"wmv", FileKind::video},      Extension{"xip", FileKind::archive},
    Extension{"xls", FileKind::document},   Extension{"xlsx", FileKind::document},
    Extension{"xml", FileKind::document},   Extension{"xz", FileKind::archive},
    Extension{"zip", FileKind::archive},    Extension{"zst", FileKind::archive}};
// clang-format on
static_assert(std::is_sorted(extensions.begin(), extensions.end(),
                             [](const Extension& a, const Extension& b) {
                                 return a.text < b.text;
                             }));

// Programs and parts of them, libraries of pictures, films and songs, documents that are folders.
constexpr std::array<std::string_view, 20> packageExtensions{"app",
                                                             "framework",
                                                             "xcframework",
                                                             "bundle",
                                                             "plugin",
                                                             "kext",
                                                             "appex",
                                                             "prefpane",
                                                             "saver",
                                                             "photoslibrary",
                                                             "photolibrary",
                                                             "aplibrary",
                                                             "migratedphotolibrary",
                                                             "imovielibrary",
                                                             "fcpbundle",
                                                             "tvlibrary",
                                                             "musiclibrary",
                                                             "rtfd",
                                                             "pages",
                                                             "key"};

} // namespace

FileKind fileKind(std::string_view pathExtension) {
    const std::string text = composedLowercase(pathExtension);
    const auto* const found =
        std::lower_bound(extensions.begin(), extensions.end(), text,
                         [](const Extension& a, const std::string& b) { return a.text < b; });
    return found != extensions.end() && found->text == text ? found->kind : FileKind::other;
}

std::string_view title(FileKind kind) noexcept {
    constexpr std::array<std::string_view, 8> titles{"Disk images", "Archives",  "Video", "Audio",
                                                     "Pictures",    "Documents", "Apps",  "Other"};
    return titles[static_cast<std::size_t>(kind)];
}

bool isPackageExtension(std::string_view pathExtension) {
    const std::string text = composedLowercase(pathExtension);
    return std::find(packageExtensions.begin(), packageExtensions.end(), text) !=
           packageExtensions.end();
}

} // namespace korvane
