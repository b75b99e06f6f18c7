#include "Korvane/window/audit/ReclaimedChart.h"

#include "Korvane/window/support/Texts.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"

#include <algorithm>
#include <utility>

namespace korvane {

void ReclaimedChart::show(std::shared_ptr<const AuditReading> reading) {
    reading_ = std::move(reading);
    emit changed();
}

QStringList ReclaimedChart::periods() {
    return {Texts::sentence(label(ChartPeriod::daily)),
            Texts::sentence(label(ChartPeriod::weekly))};
}

void ReclaimedChart::setPeriod(int period) {
    const ChartPeriod wanted = period == 0 ? ChartPeriod::daily : ChartPeriod::weekly;
    if (wanted != period_) {
        period_ = wanted;
        emit changed();
    }
}

const std::vector<ChartBar>& ReclaimedChart::chart() const {
    static const std::vector<ChartBar> none;
    return reading_ ? reading_->bars[static_cast<std::size_t>(period_)] : none;
}

std::int64_t ReclaimedChart::periodBytes() const {
    std::int64_t sum = 0;
    for (const ChartBar& bar : chart()) {
        sum = checkedAdd(sum, bar.bytes);
    }
    return sum;
}

std::int64_t ReclaimedChart::axisTop() const {
    std::int64_t most = 0;
    for (const ChartBar& bar : chart()) {
        most = std::max(most, bar.bytes);
    }
    return axisAmounts(most).back();
}

QVariantList ReclaimedChart::bars() const {
    const auto top = static_cast<double>(axisTop());
    QVariantList bars;
    for (const ChartBar& bar : chart()) {
        bars.append(QVariantMap{
            {QStringLiteral("label"), Texts::sentence(bar.label)},
            {QStringLiteral("text"),
             tr("%1: %2").arg(Texts::sentence(bar.label), Texts::bytes(bar.bytes))},
            {QStringLiteral("share"), std::clamp(static_cast<double>(bar.bytes) / top, 0.0, 1.0)}});
    }
    return bars;
}

QVariantList ReclaimedChart::ticks() const {
    const std::int64_t top = axisTop();
    QVariantList ticks;
    for (const std::int64_t amount : axisAmounts(top)) {
        ticks.append(QVariantMap{
            {QStringLiteral("text"), Texts::bytes(amount)},
            {QStringLiteral("share"), static_cast<double>(amount) / static_cast<double>(top)}});
    }
    return ticks;
}

QString ReclaimedChart::periodText() const {
    return periodIsEmpty() ? QString() : Texts::bytes(periodBytes());
}

QString ReclaimedChart::operationsText() const {
    return reading_ ? Texts::count(static_cast<std::int64_t>(reading_->entries.size())) : QString();
}

QString ReclaimedChart::lifetimeText() const {
    return reading_ ? Texts::bytes(reading_->lifetimeReclaimed) : QString();
}

} // namespace korvane
