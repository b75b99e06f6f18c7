#pragma once

#include <string_view>

namespace korvane {

/// What a file is for, as far as its name tells.
enum class FileKind {
    diskImage,
    archive,
    video,
    audio,
    picture,
    document,
    app,
    other,
};

/// By the extension, upper and lower case alike.
[[nodiscard]] FileKind fileKind(std::string_view pathExtension);

/// For people, in the plural: "Disk images".
[[nodiscard]] std::string_view title(FileKind kind) noexcept;

/// Whether a folder of this extension is one thing to its user ("Mail.app",
/// "Holiday.photoslibrary"): what is inside belongs to it and is never judged file by file. Upper
/// and lower case alike.
[[nodiscard]] bool isPackageExtension(std::string_view pathExtension);

} // namespace korvane
