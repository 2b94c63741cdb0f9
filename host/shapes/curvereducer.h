#pragma once

#include "host/hostexport.h"

#include <QPointF>

#include <vector>

class SampleRing;

/// Makes the polylines of a curve that has more samples than there are pixels.
///
/// Of the samples in one column of pixels the first, the least, the greatest and the last are kept, in order of time,
/// so that every peak shows and the polyline looks as if all had been drawn. Buffers are kept from one use to the next.
class KORVANE_HOST_EXPORT CurveReducer
{
public:
    /// One stretch without a gap, in points().
    struct Run
    {
        int first;
        int count;
    };

    /// Reduces what lies from \p beginMs to \p endMs. Columns are \p columnMs wide and lie at multiples of that, not at
    /// beginMs, so that they keep their samples while the window moves on.
    void reduce(const SampleRing& samples, qint64 beginMs, qint64 endMs, double columnMs);

    /// x: milliseconds since beginMs; y: value.
    const std::vector<QPointF>& points() const { return m_points; }
    const std::vector<Run>& runs() const { return m_runs; }

private:
    void put(const QPointF& point, double column);
    void endColumn();
    void endRun();

    std::vector<QPointF> m_points;
    std::vector<Run> m_runs;
    int m_runBegin = 0;

    // The column being read; its first point is in m_points already.
    bool m_hasColumn = false;
    double m_column = 0;
    QPointF m_least;
    QPointF m_greatest;
    QPointF m_last;
};
