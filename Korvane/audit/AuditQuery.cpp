#include "Korvane/audit/AuditQuery.h"

#include "Korvane/audit/ModuleNames.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/foundation/Text.h"

#include <algorithm>
#include <functional>

namespace korvane {

namespace {

class Matcher {
  public:
    explicit Matcher(const AuditQuery& query)
        : module_(query.module), folded_(composedLowercase(query.text)) {}

    bool operator()(const AuditEntry& entry) const {
        return (module_.empty() || entry.scannerID == module_) &&
               (folded_.empty() || contains(moduleName(entry.scannerID)) ||
                std::any_of(entry.paths.begin(), entry.paths.end(),
                            [this](const std::string& path) { return contains(path); }));
    }

  private:
    bool contains(std::string_view text) const {
        // One entry can name a great many paths.
        return !Task::isCancelled() && composedLowercase(text).find(folded_) != std::string::npos;
    }

    std::string module_;
    std::string folded_;
};

} // namespace

std::vector<AuditEntry> matchingEntries(std::vector<AuditEntry> entries, const AuditQuery& query) {
    std::erase_if(entries, std::not_fn(Matcher(query)));
    return entries;
}

std::vector<std::size_t> matchingPlaces(std::span<const AuditEntry> entries,
                                        const AuditQuery& query) {
    const Matcher matches(query);
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < entries.size() && !Task::isCancelled(); ++i) {
        if (matches(entries[i])) {
            places.push_back(i);
        }
    }
    return places;
}

} // namespace korvane
