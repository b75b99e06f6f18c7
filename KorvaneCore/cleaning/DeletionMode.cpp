#include "KorvaneCore/cleaning/DeletionMode.h"

#include "KorvaneCore/platform/UserDefaults.h"
#include "KorvaneCore/scan/ByteDisplay.h"

#include <fmt/format.h>

namespace korvane {

std::string_view rawValue(DeletionMode mode) noexcept {
    return mode == DeletionMode::permanent ? "permanent" : "trash";
}

std::optional<DeletionMode> deletionModeFromRawValue(std::string_view text) noexcept {
    for (const DeletionMode mode : {DeletionMode::trash, DeletionMode::permanent}) {
        if (text == rawValue(mode)) {
            return mode;
        }
    }
    return std::nullopt;
}

std::string_view actionTitle(DeletionMode mode) noexcept {
    return mode == DeletionMode::permanent ? "Delete" : "Move to Bin";
}

std::string confirmationQuestion(DeletionMode mode, std::size_t count, std::string_view noun) {
    const std::string_view plural = count == 1 ? "" : "s";
    return mode == DeletionMode::permanent
               ? fmt::format("Delete {} {}{} permanently?", count, noun, plural)
               : fmt::format("Move {} {}{} to the Bin?", count, noun, plural);
}

std::string consequence(DeletionMode mode, std::int64_t selectedBytes) {
    const bool known = selectedBytes >= 1;
    const std::string size = known ? ByteDisplay::format(selectedBytes) : std::string();
    if (mode == DeletionMode::permanent) {
        return known ? fmt::format("This frees {} immediately and cannot be undone.", size)
                     : "This cannot be undone.";
    }
    if (!known) {
        return "They stay on your disk in the Bin, so this frees nothing yet - emptying the Bin is "
               "what frees the space. You can put anything back from there in the meantime.";
    }
    return fmt::format("They stay on your disk in the Bin, so this frees nothing yet - emptying "
                       "the Bin is what frees the {}. You can put anything back from there in the "
                       "meantime.",
                       size);
}

DeletionMode DeletionPreference::current(const UserDefaults& defaults) {
    const auto stored = defaults.string(key);
    return stored ? deletionModeFromRawValue(*stored).value_or(DeletionMode::trash)
                  : DeletionMode::trash;
}

void DeletionPreference::setCurrent(UserDefaults& defaults, DeletionMode mode) {
    defaults.set(key, std::string(rawValue(mode)));
}

} // namespace korvane
