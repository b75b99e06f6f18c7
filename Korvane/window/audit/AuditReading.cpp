#include "Korvane/window/audit/AuditReading.h"

#include "Korvane/audit/ModuleNames.h"

namespace korvane {

std::shared_ptr<const AuditReading> AuditReading::of(const AuditLog& log) {
    const Date now = Date::now();
    auto reading = std::make_shared<AuditReading>();
    reading->entries = log.entries();
    reading->days = dayRuns(reading->entries, now);
    reading->modules = modulesOf(reading->entries);
    reading->bars = {chartBars(reading->entries, ChartPeriod::daily, now),
                     chartBars(reading->entries, ChartPeriod::weekly, now)};
    reading->lifetimeReclaimed = auditStatistics(reading->entries, {}).lifetimeReclaimed;
    return reading;
}

} // namespace korvane
