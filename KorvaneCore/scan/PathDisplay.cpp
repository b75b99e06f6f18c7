#include "KorvaneCore/scan/PathDisplay.h"

#include "KorvaneCore/foundation/CheckedArithmetic.h"

#include <algorithm>
#include <vector>

namespace korvane::PathDisplay {

namespace {

std::string abbreviatingHome(std::string_view path, std::string_view home) {
    if (home.empty() || !path.starts_with(home)) {
        return std::string(path);
    }
    const std::string_view rest = path.substr(home.size());
    return rest.empty() || rest.starts_with('/') ? "~" + std::string(rest) : std::string(path);
}

std::vector<std::string_view> pieces(std::string_view path) {
    std::vector<std::string_view> result;
    while (!path.empty()) {
        const std::string_view piece = path.substr(0, path.find('/'));
        if (!piece.empty()) {
            result.push_back(piece);
        }
        path.remove_prefix(std::min(piece.size() + 1, path.size()));
    }
    return result;
}

} // namespace

std::string shorten(std::string_view path, std::size_t maximumComponents, const FileURL& home) {
    std::string whole = abbreviatingHome(path, home.path());
    const std::vector<std::string_view> names = pieces(whole);
    if (names.size() <= maximumComponents) {
        return whole;
    }
    if (maximumComponents < 2) {
        fatalError("a path cannot be shortened to fewer than two components");
    }
    std::string shortened = whole.starts_with('/') ? "/" : "";
    shortened += names.front();
    shortened += "/…";
    for (std::size_t i = names.size() - (maximumComponents - 2); i < names.size(); ++i) {
        shortened += '/';
        shortened += names[i];
    }
    return shortened;
}

} // namespace korvane::PathDisplay
