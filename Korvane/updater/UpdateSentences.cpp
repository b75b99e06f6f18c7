#include "Korvane/updater/UpdateSentences.h"

#include <fmt/format.h>

namespace korvane::UpdateSentences {

std::string unreachable(std::string_view host) {
    return fmt::format("Couldn't reach {}. Check your connection and try again.", host);
}

std::string systemTooOld(std::string_view version, std::string_view minimum) {
    return fmt::format("Korvane {} needs macOS {} or later.", version, minimum);
}

std::string wrongVersion(std::string_view version) {
    return fmt::format("The downloaded app was not version {}, so it was discarded.", version);
}

std::string notInstalled(std::string_view reason) {
    return fmt::format("The update could not be installed: {}", reason);
}

std::string upToDateTitle(std::string_view version) {
    return fmt::format("You're on Korvane {}", version);
}

std::string upToDateDetail(std::string_view version) {
    return fmt::format("{} is the latest version.", version);
}

} // namespace korvane::UpdateSentences
