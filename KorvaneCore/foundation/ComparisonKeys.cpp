#include "KorvaneCore/foundation/ComparisonKeys.h"

#include "KorvaneCore/foundation/Text.h"

namespace korvane {

std::vector<std::string> comparisonKeys(const FileURL& url) {
    return comparisonKeys(url.standardized(), url.resolvingSymlinks().standardized());
}

std::vector<std::string> comparisonKeys(const FileURL& standardized, const FileURL& resolved) {
    std::vector<std::string> keys{composedLowercase(standardized.path())};
    if (resolved != standardized) {
        std::string key = composedLowercase(resolved.path());
        if (key != keys.front()) {
            keys.push_back(std::move(key));
        }
    }
    return keys;
}

std::string enclosingPrefix(std::string_view key) {
    std::string prefix(key);
    if (!prefix.ends_with('/')) {
        prefix += '/';
    }
    return prefix;
}

} // namespace korvane
