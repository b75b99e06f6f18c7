#pragma once

#include "Korvane/audit/AuditReview.h"
#include "KorvaneCore/audit/AuditLog.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace korvane {

/// The log as it was read, with what takes long to work out. Made once and shared, as the screen
/// goes on showing one while the next is read.
struct AuditReading {
    std::vector<AuditEntry> entries;
    std::vector<DayRun> days;
    std::vector<std::string> modules;
    std::array<std::vector<ChartBar>, 2> bars; ///< by ChartPeriod
    std::int64_t lifetimeReclaimed = 0;

    /// Takes as long as the log is long. Any thread.
    [[nodiscard]] static std::shared_ptr<const AuditReading> of(const AuditLog& log);
};

} // namespace korvane
