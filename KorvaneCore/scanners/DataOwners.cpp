#include "KorvaneCore/scanners/DataOwners.h"

#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scanners/ReservedNames.h"

#include <algorithm>
#include <array>

namespace korvane {

namespace {

// Below "com.vendor" lies what other applications of that vendor own.
constexpr std::ptrdiff_t dotsInWholeIdentifier = 2;
constexpr std::size_t shortestIdentifier = 4;

constexpr std::array<std::string_view, 5> fileExtensions{".lockfile", ".plist", ".binarycookies",
                                                         ".savedstate", ".crash"};

std::string_view withoutExtensions(std::string_view key) {
    for (const std::string_view extension : fileExtensions) {
        if (key.size() > extension.size() && key.ends_with(extension)) {
            key.remove_suffix(extension.size());
        }
    }
    return key;
}

bool isHexadecimal(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
}

/// Whether the key is a report of that program: a date or a unique identity follows.
bool isReportOf(std::string_view program, std::string_view key) {
    return !program.empty() && key.size() > program.size() + 1 && key.starts_with(program) &&
           (key[program.size()] == '_' || key[program.size()] == '-') &&
           isHexadecimal(key[program.size() + 1]);
}

} // namespace

DataOwners::DataOwners(const std::vector<InstalledApplication>& applications, bool areAll) {
    keys_.reserve(applications.size());
    for (const InstalledApplication& application : applications) {
        const std::string identifier = composedLowercase(application.identifier);
        const bool isWhole =
            std::count(identifier.begin(), identifier.end(), '.') >= dotsInWholeIdentifier &&
            identifier.size() >= shortestIdentifier && !identifier.ends_with('.');
        keys_.push_back({identifier, areAll && isWhole, isWhole && isSystemName(identifier),
                         composedLowercase(application.name),
                         composedLowercase(application.executable)});
    }
}

std::vector<std::size_t> DataOwners::owners(std::string_view fileName, DataNaming naming) const {
    std::vector<std::size_t> best;
    if (isOwnName(fileName)) {
        return best;
    }
    const bool isSystems = isSystemName(fileName);
    const std::string key = composedLowercase(fileName);
    std::size_t longest = 1;
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        // Of the system's names only its own applications have some.
        if (isSystems && !keys_[i].isSystems) {
            continue;
        }
        const std::size_t length = fit(keys_[i], key, isSystems ? DataNaming::identifier : naming);
        if (length > longest) {
            best.clear();
            longest = length;
        }
        if (length == longest) {
            best.push_back(i);
        }
    }
    return best;
}

std::size_t DataOwners::fit(const Keys& keys, std::string_view key, DataNaming naming) {
    const std::string& identifier = keys.identifier;
    if (!identifier.empty() && key.starts_with(identifier) &&
        (withoutExtensions(key) == identifier || key == identifier ||
         (keys.hasFamily && key[identifier.size()] == '.'))) {
        return identifier.size();
    }
    if (naming == DataNaming::identifierOrName && key == keys.name) {
        return keys.name.size();
    }
    if (naming == DataNaming::crashReport) {
        const std::size_t byName = isReportOf(keys.name, key) ? keys.name.size() : 0;
        return std::max(byName, isReportOf(keys.executable, key) ? keys.executable.size() : 0);
    }
    return 0;
}

} // namespace korvane
