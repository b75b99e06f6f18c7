#include "KorvaneCore/platform/linux/TrashInfo.h"

#include "KorvaneCore/foundation/PercentCoding.h"

#include <fmt/format.h>

namespace korvane {

namespace {

// What comes after a dot and is longer than this is no extension that any program looks at.
constexpr std::size_t longestExtension = 32;

std::string_view extensionWithDot(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    const bool hasOne = dot != std::string_view::npos && dot > 0 && dot + 1 < name.size() &&
                        name.size() - dot <= longestExtension;
    return hasOne ? name.substr(dot) : std::string_view();
}

bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

std::string_view cut(std::string_view text, std::size_t longest) {
    if (text.size() <= longest) {
        return text;
    }
    // A character has at most three continuation bytes; more of them are no UTF-8 and stay.
    std::size_t end = longest;
    while (end > 0 && longest - end < 3 && isContinuation(text[end])) {
        --end;
    }
    return text.substr(0, isContinuation(text[end]) ? longest : end);
}

} // namespace

std::string trashName(std::string_view name, std::uint64_t number, std::size_t longest) {
    const std::size_t room = longest - trashInfoExtension.size();
    if (number == 1 && name.size() <= room) {
        return std::string(name);
    }
    const std::string_view extension = extensionWithDot(name);
    const std::string mark = number == 1 ? std::string() : fmt::format(" {}", number);
    const std::string_view base = name.substr(0, name.size() - extension.size());
    return fmt::format("{}{}{}", cut(base, room - mark.size() - extension.size()), mark, extension);
}

std::string trashInfoText(std::string_view path, std::time_t deletedAt) {
    std::tm local{};
    localtime_r(&deletedAt, &local);
    return fmt::format("[Trash Info]\nPath={}\n"
                       "DeletionDate={:04}-{:02}-{:02}T{:02}:{:02}:{:02}\n",
                       percentCoded(path, "-_.~/"), local.tm_year + 1900, local.tm_mon + 1,
                       local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
}

} // namespace korvane
