#include "KorvaneCore/foundation/FileError.h"

#include "KorvaneCore/foundation/Text.h"

#include <array>
#include <cstring>

#include <fmt/format.h>

namespace korvane {

namespace {

// glibc's own form of strerror_r, which may or may not use the buffer.
std::string textOf(int posixError) {
    std::array<char, 128> buffer{};
    return strerror_r(posixError, buffer.data(), buffer.size());
}

} // namespace

std::string errorText(int posixError) {
    return textOf(posixError);
}

FileError::FileError(int posixError, std::string_view action, const std::string& path)
    : FileError(posixError,
                fmt::format("Could not {} {}: {}", action, displayText(path), textOf(posixError)),
                action, path) {}

FileError::FileError(int posixError, std::string sentence, std::string_view action,
                     std::string path)
    : std::system_error(posixError, std::generic_category(),
                        fmt::format("{} {}", action, displayText(path))),
      path_(std::move(path)), reason_(std::move(sentence)) {}

std::string localizedDescription(const std::exception& error) {
    if (const auto* file = dynamic_cast<const FileError*>(&error)) {
        return file->reason();
    }
    return error.what();
}

} // namespace korvane
