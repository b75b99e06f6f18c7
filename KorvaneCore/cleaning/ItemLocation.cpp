#include "KorvaneCore/cleaning/ItemLocation.h"

#include "KorvaneCore/foundation/ComparisonKeys.h"

#include <algorithm>

namespace korvane {

ItemLocation::ItemLocation(const FileURL& url)
    : given(url), standardized(url.standardized()),
      resolved(url.resolvingSymlinks().standardized()), site(standardized),
      keys(comparisonKeys(standardized, resolved)) {
    if (resolved == standardized) {
        return;
    }
    const FileURL folder = standardized.deletingLastPathComponent().resolvingSymlinks();
    site = folder.appending(standardized.lastPathComponent()).standardized();
    if (site == standardized || site == resolved) {
        return;
    }
    std::string key = comparisonKeys(site, site).front();
    if (std::find(keys.begin(), keys.end(), key) == keys.end()) {
        keys.push_back(std::move(key));
    }
}

} // namespace korvane
