#include "host/shapes/timeticks.h"

#include <qwt_date.h>
#include <qwt_date_scale_engine.h>

#include <QDateTime>

#include <algorithm>
#include <cmath>

namespace {

constexpr double secondMs = 1000;
constexpr double minuteMs = 60 * secondMs;
constexpr double dayMs = 24 * 60 * minuteMs;

QString formatFor(double distanceMs)
{
    if (distanceMs < secondMs)
        return QStringLiteral("HH:mm:ss.zzz");
    if (distanceMs < minuteMs)
        return QStringLiteral("HH:mm:ss");
    if (distanceMs < dayMs)
        return QStringLiteral("HH:mm");
    return distanceMs < 28 * dayMs ? QStringLiteral("MM-dd") : QStringLiteral("yyyy-MM");
}

} // namespace

std::vector<TimeTicks::Tick> TimeTicks::between(qint64 beginMs, qint64 endMs, int most, const QTimeZone& zone)
{
    if (endMs <= beginMs)
        return {};
    QwtDateScaleEngine engine(Qt::OffsetFromUTC);
    engine.setUtcOffset(zone.offsetFromUtc(QDateTime::fromMSecsSinceEpoch(endMs, Qt::UTC)));
    const QList<double> times =
        engine.divideScale(double(beginMs), double(endMs), std::clamp(most, 1, 50), 0).ticks(QwtScaleDiv::MajorTick);
    const QString format = formatFor(times.size() > 1 ? times.at(1) - times.at(0) : double(endMs - beginMs));
    std::vector<Tick> ticks;
    for (const double time : times) {
        const qint64 timeMs = std::llround(time);
        ticks.push_back({timeMs, QDateTime::fromMSecsSinceEpoch(timeMs, zone).toString(format)});
    }
    return ticks;
}
