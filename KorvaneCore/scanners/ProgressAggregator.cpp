#include "KorvaneCore/scanners/ProgressAggregator.h"

#include <algorithm>
#include <numeric>

#include <fmt/format.h>

namespace korvane {

void ProgressAggregator::update(std::ptrdiff_t child, std::string_view displayName,
                                std::string_view message, std::optional<double> fraction) {
    ScanProgress overall{"Scanning…", 0.0};
    {
        const std::lock_guard guard(lock_);
        if (child < 0 || child >= std::ssize(lastMessages_)) {
            return;
        }
        const auto index = static_cast<std::size_t>(child);
        if (fraction) {
            perChildFraction_[index] = *fraction;
        }
        lastMessages_[index] = fmt::format("{}: {}", displayName, message);
        const double sum = std::accumulate(perChildFraction_.begin(), perChildFraction_.end(), 0.0);
        overall.fraction = sum / static_cast<double>(perChildFraction_.size());
        const auto spoken = std::find_if(lastMessages_.rbegin(), lastMessages_.rend(),
                                         [](const std::string& text) { return !text.empty(); });
        if (spoken != lastMessages_.rend()) {
            overall.message = *spoken;
        }
    }
    downstream_(overall);
}

} // namespace korvane
