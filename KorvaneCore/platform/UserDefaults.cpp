#include "KorvaneCore/platform/UserDefaults.h"

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/foundation/Text.h"

#include <utility>

#include <fmt/format.h>

namespace korvane {

namespace {

/// The object in the file, an empty one when there is no file. Throws for anything else.
Json readObject(const FileURL& file) {
    const auto content = readFile(file);
    if (!content) {
        return Json::object();
    }
    Json object;
    try {
        object = parseJson(*content);
    } catch (const DecodingError& error) {
        throw DecodingError(fmt::format("{}: {}", displayText(file.path()), error.what()));
    }
    if (!object.is_object()) {
        throw DecodingError(fmt::format("{}: no JSON object", displayText(file.path())));
    }
    return object;
}

} // namespace

UserDefaults::UserDefaults(FileURL file) : file_(std::move(file)) {}

Json UserDefaults::all() const {
    try {
        return readObject(file_);
    } catch (const FileError&) {
        return Json::object();
    } catch (const DecodingError&) {
        return Json::object();
    }
}

std::optional<std::string> UserDefaults::string(std::string_view key) const {
    const Json object = all();
    const auto found = object.find(std::string(key));
    if (found == object.end()) {
        return std::nullopt;
    }
    if (found->is_string()) {
        return found->get<std::string>();
    }
    if (found->is_number() || found->is_boolean()) {
        return found->dump();
    }
    return std::nullopt;
}

void UserDefaults::set(std::string_view key, const Json& value) {
    const bool isText = value.is_string();
    if (!isValidUTF8(key) || (isText && !isValidUTF8(value.get_ref<const std::string&>())) ||
        !(isText || value.is_number() || value.is_boolean())) {
        throw DecodingError(fmt::format("\"{}\" can only be text in UTF-8, a number, true or false",
                                        displayText(key)));
    }
    const std::scoped_lock locked(lock_);
    const FileURL folder = file_.deletingLastPathComponent();
    createDirectories(folder);
    const FolderLock betweenProcesses(folder);
    Json object = readObject(file_);
    object[std::string(key)] = value;
    constexpr int indent = 2; // people edit this file
    writeFileAtomically(file_, object.dump(indent) + "\n");
}

} // namespace korvane
