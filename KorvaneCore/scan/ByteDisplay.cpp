#include "KorvaneCore/scan/ByteDisplay.h"

#include <fmt/format.h>

namespace korvane::ByteDisplay {

namespace {

/// Below 1 GB: KB whole, MB with a fraction where it is not nought. A count that rounds up to 1000
/// of a unit reads as 1 of the next.
std::string formatSmall(std::int64_t bytes) {
    if (bytes < 1000) {
        return bytes == 1 ? "1 byte" : fmt::format("{} bytes", bytes);
    }
    const std::int64_t kilobytes = (bytes + 500) / 1000;
    if (kilobytes < 1000) {
        return fmt::format("{} KB", kilobytes);
    }
    const std::int64_t tenths = (bytes + 50'000) / 100'000;
    if (tenths >= 10'000) {
        return "1 GB";
    }
    return tenths % 10 == 0 ? fmt::format("{} MB", tenths / 10)
                            : fmt::format("{}.{} MB", tenths / 10, tenths % 10);
}

} // namespace

std::string format(std::int64_t bytes) {
    if (bytes < 1) {
        return "0 bytes";
    }
    const double gigabytes = static_cast<double>(bytes) / 1e9;
    if (gigabytes < 1.0) {
        return formatSmall(bytes);
    }
    return gigabytes < 10.0 ? fmt::format("{:.1f} GB", gigabytes)
                            : fmt::format("{:.0f} GB", gigabytes);
}

std::string formatAmount(std::int64_t bytes) {
    return bytes < 1 ? "nothing" : format(bytes);
}

} // namespace korvane::ByteDisplay
