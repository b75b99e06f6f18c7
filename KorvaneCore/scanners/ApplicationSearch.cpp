#include "KorvaneCore/scanners/ApplicationSearch.h"

#include "KorvaneCore/foundation/ComparisonKeys.h"
#include "KorvaneCore/foundation/Text.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

namespace korvane {

namespace {

/// Where an application is once all links are followed.
std::string place(const InstalledApplication& application) {
    return comparisonKeys(application.location).back();
}

/// How directly a text means an application; the lower, the more so.
enum class Closeness { path, identifier, name, alias, none };

class Query {
  public:
    explicit Query(std::string_view text) : key_(composedLowercase(text)) {
        if (text.starts_with('/')) {
            place_ = comparisonKeys(FileURL(std::string(text))).back();
        }
    }

    [[nodiscard]] Closeness closeness(const InstalledApplication& application) const {
        if (!place_.empty()) {
            return place(application) == place_ ? Closeness::path : Closeness::none;
        }
        const auto isKey = [this](std::string_view text) {
            return composedLowercase(text) == key_;
        };
        if (key_.empty()) {
            return Closeness::none;
        }
        if (isKey(application.identifier)) {
            return Closeness::identifier;
        }
        if (isKey(application.name) || isKey(application.location.lastPathComponent())) {
            return Closeness::name;
        }
        return std::any_of(application.aliases.begin(), application.aliases.end(), isKey)
                   ? Closeness::alias
                   : Closeness::none;
    }

  private:
    std::string key_;
    std::string place_;
};

} // namespace

std::vector<InstalledApplication> findApplications(const SoftwareInventory& inventory,
                                                   std::string_view text) {
    const Query query(text);
    std::vector<InstalledApplication> matches;
    std::set<std::string> places;
    Closeness closest = Closeness::alias;
    for (InstalledApplication& application : inventory.applications()) {
        const Closeness closeness = query.closeness(application);
        if (closeness > closest) {
            continue;
        }
        if (closeness < closest) {
            closest = closeness;
            matches.clear();
            places.clear();
        }
        if (places.insert(place(application)).second) {
            matches.push_back(std::move(application));
        }
    }
    return matches;
}

} // namespace korvane
