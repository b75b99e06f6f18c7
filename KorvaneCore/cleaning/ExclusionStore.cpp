#include "KorvaneCore/cleaning/ExclusionStore.h"

#include "KorvaneCore/cleaning/ItemLocation.h"
#include "KorvaneCore/foundation/ComparisonKeys.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Json.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/foundation/Text.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include <fmt/format.h>

namespace korvane {

namespace {

std::string encode(const std::vector<Exclusion>& items) {
    Json array = Json::array();
    for (const Exclusion& item : items) {
        array.push_back(
            Json{{"id", item.id.text()}, {"path", pathText(item.path)}, {"note", item.note}});
    }
    return compactJson(array);
}

Exclusion decode(const Json& object) {
    const auto id = UUID::fromText(requireString(object, "id"));
    if (!id) {
        throw DecodingError("\"id\" must be a UUID");
    }
    return {.id = *id,
            .path = pathFromText(requireString(object, "path")),
            .note = requireString(object, "note")};
}

/// The list in the file; nothing when there is none that can be read whole.
std::optional<std::vector<Exclusion>> readItems(const FileURL& file) {
    try {
        const auto content = readFile(file);
        if (!content) {
            return std::nullopt;
        }
        const Json document = parseJson(*content);
        if (!document.is_array()) {
            return std::nullopt;
        }
        std::vector<Exclusion> items;
        std::transform(document.begin(), document.end(), std::back_inserter(items), decode);
        return items;
    } catch (const FileError&) {
        return std::nullopt;
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

/// The record as the file will give it back, so that memory and file never differ.
Exclusion storable(Exclusion exclusion, const FileURL& home) {
    if (!isValidUTF8(exclusion.path)) {
        exclusion.path = expandingTilde(exclusion.path, home); // only absolute paths become URLs
    }
    exclusion.path = pathFromText(pathText(exclusion.path));
    if (!isValidUTF8(exclusion.note)) {
        exclusion.note = displayText(exclusion.note);
    }
    return exclusion;
}

bool contains(const std::vector<Exclusion>& items, const UUID& id) {
    return std::any_of(items.begin(), items.end(),
                       [&](const Exclusion& item) { return item.id == id; });
}

bool anyBeginsWith(const std::vector<std::string>& keys, const std::vector<std::string>& prefixes) {
    return std::any_of(keys.begin(), keys.end(), [&](const std::string& key) {
        return std::any_of(prefixes.begin(), prefixes.end(),
                           [&](const std::string& prefix) { return key.starts_with(prefix); });
    });
}

} // namespace

std::string ExclusionMatch::message() const {
    switch (match) {
    case Case::exact:
        break;
    case Case::inside:
        return fmt::format("This is inside {}, which is on your exclusion list, so Korvane left it "
                           "alone.",
                           displayText(root));
    case Case::contains:
        return fmt::format("Deleting this would also delete {}, which is on your exclusion list - "
                           "so Korvane left the whole thing alone.",
                           displayText(root));
    }
    return "This is on your exclusion list, so Korvane left it alone.";
}

std::string_view rawValue(ExclusionMatch::Case match) noexcept {
    switch (match) {
    case ExclusionMatch::Case::exact:
        return "exact";
    case ExclusionMatch::Case::inside:
        return "inside";
    case ExclusionMatch::Case::contains:
        break;
    }
    return "contains";
}

ExclusionStore::ExclusionStore(FileURL fileURL, FileURL home)
    : fileURL_(std::move(fileURL)), home_(std::move(home)) {
    adopt(readItems(fileURL_).value_or(std::vector<Exclusion>()));
}

std::vector<Exclusion> ExclusionStore::items() const {
    const std::scoped_lock locked(lock_);
    return items_;
}

void ExclusionStore::add(const Exclusion& exclusion) {
    const std::scoped_lock locked(lock_);
    const FileURL folder = fileURL_.deletingLastPathComponent();
    createDirectories(folder);
    const FolderLock betweenProcesses(folder);
    std::vector<Exclusion> candidate = newestItems();
    candidate.push_back(storable(exclusion, home_));
    save(candidate);
    adopt(std::move(candidate));
}

bool ExclusionStore::remove(const UUID& id) {
    const std::scoped_lock locked(lock_);
    if (!contains(items_, id) && !readItems(fileURL_)) {
        return false; // nothing to change, so no folder is made either
    }
    const FileURL folder = fileURL_.deletingLastPathComponent();
    createDirectories(folder);
    const FolderLock betweenProcesses(folder);
    std::vector<Exclusion> candidate = newestItems();
    const auto found = std::find_if(candidate.begin(), candidate.end(),
                                    [&](const Exclusion& item) { return item.id == id; });
    if (found == candidate.end()) {
        const bool wasListed = contains(items_, id);
        adopt(std::move(candidate));
        return wasListed;
    }
    candidate.erase(found);
    save(candidate);
    adopt(std::move(candidate));
    return true;
}

// What a change starts from: the file, which another process may have changed. Without a readable
// one the list in memory stands, so that a lost file loses no protection.
std::vector<Exclusion> ExclusionStore::newestItems() const {
    return readItems(fileURL_).value_or(items_);
}

void ExclusionStore::save(const std::vector<Exclusion>& items) const {
    writeFileAtomically(fileURL_, encode(items));
}

void ExclusionStore::adopt(std::vector<Exclusion> items) {
    auto roots = std::make_shared<Roots>();
    std::unordered_set<std::string> claimed;
    for (const Exclusion& item : items) {
        const std::string expanded = expandingTilde(item.path, home_);
        const FileURL url{expanded};
        // The root can never be on the list: it would protect everything.
        if (!url.isAbsolute() || url.standardized().path() == "/") {
            continue;
        }
        Root root{.display = item.path, .keys = {}, .prefixes = {}, .depth = 0};
        for (const std::string& key : ItemLocation(url).keys) {
            if (claimed.insert(key).second) {
                root.keys.push_back(key);
                root.prefixes.push_back(enclosingPrefix(key));
            }
        }
        if (root.keys.empty()) {
            continue; // an earlier one covers exactly this place
        }
        root.depth = url.componentCount() - 1;
        roots->push_back(std::move(root));
    }
    items_ = std::move(items);
    roots_ = std::move(roots);
}

std::shared_ptr<const ExclusionStore::Roots> ExclusionStore::roots() const {
    const std::scoped_lock locked(lock_);
    return roots_;
}

std::optional<ExclusionMatch> ExclusionStore::match(const FileURL& url) const {
    return roots()->empty() ? std::nullopt : match(ItemLocation(url));
}

std::optional<ExclusionMatch> ExclusionStore::match(const ItemLocation& location) const {
    const auto snapshot = roots();
    const std::vector<std::string>& keys = location.keys;
    for (const Root& root : *snapshot) {
        if (std::find_first_of(root.keys.begin(), root.keys.end(), keys.begin(), keys.end()) !=
            root.keys.end()) {
            return ExclusionMatch{ExclusionMatch::Case::exact, root.display};
        }
    }
    const Root* best = nullptr;
    for (const Root& root : *snapshot) {
        if ((best == nullptr || root.depth > best->depth) && anyBeginsWith(keys, root.prefixes)) {
            best = &root; // the most specific folder around it
        }
    }
    if (best != nullptr) {
        return ExclusionMatch{ExclusionMatch::Case::inside, best->display};
    }
    std::vector<std::string> prefixes;
    for (const std::string& key : keys) {
        if (key != "/") {
            prefixes.push_back(enclosingPrefix(key));
        }
    }
    for (const Root& root : *snapshot) {
        if ((best == nullptr || root.depth < best->depth) && anyBeginsWith(root.keys, prefixes)) {
            best = &root; // the outermost one that would go with it
        }
    }
    return best == nullptr
               ? std::nullopt
               : std::optional(ExclusionMatch{ExclusionMatch::Case::contains, best->display});
}

bool ExclusionStore::isExcluded(const FileURL& url) const {
    const auto found = match(url);
    return found && found->match != ExclusionMatch::Case::contains;
}

bool ExclusionStore::blocks(const FileURL& url) const {
    return match(url).has_value();
}

} // namespace korvane
