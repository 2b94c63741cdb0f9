#include "host/shapes/scaleticks.h"

#include <qwt_scale_engine.h>

#include <algorithm>
#include <cmath>

const std::vector<ScaleTicks::Tick>& ScaleTicks::between(double low, double high, int most)
{
    most = std::clamp(most, 1, 50);
    if (low == m_low && high == m_high && most == m_most)
        return m_ticks;
    m_low = low;
    m_high = high;
    m_most = most;
    m_ticks.clear();
    const double width = std::abs(high - low);
    if (!std::isfinite(width) || width <= std::max(std::abs(low), std::abs(high)) * 1e-12)
        return m_ticks;

    const QList<double> values = QwtLinearScaleEngine().divideScale(low, high, most, 0).ticks(QwtScaleDiv::MajorTick);
    const double distance = values.size() > 1 ? std::abs(values.at(1) - values.at(0)) : width;
    for (const double value : values)
        m_ticks.push_back({value, text(value, distance)});
    return m_ticks;
}

void ScaleTicks::widen(double& low, double& high, int most)
{
    constexpr double largest = 1e300; // beyond it widening would leave what a double holds
    double step = 0;
    low = std::clamp(low, -largest, largest);
    high = std::clamp(high, -largest, largest);
    if (std::abs(high - low) <= std::max(std::abs(low), std::abs(high)) * 1e-9) {
        const double room = low == 0 ? 1 : std::abs(low) * 0.1;
        low -= room;
        high += room;
    }
    QwtLinearScaleEngine().autoScale(std::clamp(most, 1, 50), low, high, step);
}

QString ScaleTicks::text(double value, double distance)
{
    if (std::abs(value) >= 1e7 || distance < 1e-6)
        return QString::number(value, 'g', 6);
    // The distance is 1, 2, 2.5 or 5 times a power of ten.
    int decimals = 0;
    for (double rest = distance; decimals < 7 && std::abs(rest - std::round(rest)) > 1e-6 * rest; rest *= 10)
        ++decimals;
    return QString::number(value == 0 ? 0 : value, 'f', decimals); // no "-0"
}
