#include "KorvaneCore/platform/linux/ItemErrors.h"

#include "KorvaneCore/foundation/Text.h"

#include <fmt/format.h>

namespace korvane {

namespace {

std::string sentence(ItemAction action, const std::string& path, std::string_view why) {
    const std::string name = displayText(path);
    switch (action) {
    case ItemAction::remove:
        return fmt::format("Could not remove {}: {}", name, why);
    case ItemAction::trash:
        return fmt::format("Could not move {} to the Bin: {}", name, why);
    case ItemAction::move:
        break;
    }
    return fmt::format("Could not move {}: {}", name, why);
}

std::string_view verb(ItemAction action) {
    switch (action) {
    case ItemAction::remove:
        return "remove";
    case ItemAction::trash:
        return "move to the Bin";
    case ItemAction::move:
        break;
    }
    return "move";
}

} // namespace

FileError itemError(ItemAction action, int posixError, const std::string& path) {
    return itemError(action, posixError, path, errorText(posixError));
}

FileError itemError(ItemAction action, int posixError, const std::string& path,
                    std::string_view why) {
    return {posixError, sentence(action, path, why), verb(action), path};
}

} // namespace korvane
