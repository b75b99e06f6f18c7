#include "KorvaneCore/foundation/CheckedArithmetic.h"

#include <cstdio>
#include <cstdlib>

namespace korvane {

void fatalError(std::string_view message) {
    std::fprintf(stderr, "korvane: fatal: %.*s\n", static_cast<int>(message.size()),
                 message.data());
    std::abort();
}

} // namespace korvane
