#pragma once

#include "host/shapes/samplering.h"

#include <qwt_scale_map.h>

#include <QPointF>
#include <QRectF>
#include <QTimeZone>

#include <vector>

/// What of a trend is in sight, and where.
struct TrendPlot
{
    bool hasTime = false;
    qint64 beginMs = 0;
    qint64 endMs = 0;
    double low = 0;
    double high = 1;
    QRectF rect;
    bool hasAxes = false;
    bool hasBadges = false;
    double textLeft = 0; ///< of the value axis
    QTimeZone zone;
    QwtScaleMap times; ///< milliseconds since beginMs to x
    QwtScaleMap values;

    QPointF at(double sinceBeginMs, double value) const;
    /// Index of the sample in sight that lies nearest to \p place, in the curve that has it; -1 without any.
    int nearestSample(const std::vector<SampleRing>& curves, const QPointF& place) const;
};
