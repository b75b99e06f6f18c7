#pragma once

#include <concepts>
#include <string_view>

namespace korvane {

/// Ends the process with a message. A size or count that no longer fits means that everything
/// computed from it would be wrong, and nothing may be removed on the strength of a wrong number.
[[noreturn]] void fatalError(std::string_view message);

/// `a + b`; overflow is fatal, never a wrap.
template <std::integral T>
[[nodiscard]] T checkedAdd(T a, T b) {
    T sum{};
    if (__builtin_add_overflow(a, b, &sum)) {
        fatalError("arithmetic overflow in an addition");
    }
    return sum;
}

/// `a - b`; overflow is fatal, never a wrap.
template <std::integral T>
[[nodiscard]] T checkedSubtract(T a, T b) {
    T difference{};
    if (__builtin_sub_overflow(a, b, &difference)) {
        fatalError("arithmetic overflow in a subtraction");
    }
    return difference;
}

} // namespace korvane
