#include "host/shapes/trendplot_p.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double farAway = 10000; // beside the plot; beyond that painting counts less exactly

} // namespace

QPointF TrendPlot::at(double sinceBeginMs, double value) const
{
    return {times.transform(sinceBeginMs),
            std::clamp(values.transform(value), rect.top() - farAway, rect.bottom() + farAway)};
}

int TrendPlot::nearestSample(const std::vector<SampleRing>& curves, const QPointF& place) const
{
    int nearest = -1;
    double least = std::numeric_limits<double>::infinity();
    for (const SampleRing& samples : curves) {
        for (int i = samples.firstFrom(beginMs); i < samples.size() && samples.at(i).timeMs <= endMs; ++i) {
            if (!std::isfinite(samples.at(i).value))
                continue;
            const QPointF away = at(double(samples.at(i).timeMs - beginMs), samples.at(i).value) - place;
            const double distance = QPointF::dotProduct(away, away);
            if (distance >= least)
                continue;
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}
