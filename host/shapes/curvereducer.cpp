#include "host/shapes/curvereducer.h"

#include "host/shapes/samplering.h"

#include <cmath>

void CurveReducer::reduce(const SampleRing& samples, qint64 beginMs, qint64 endMs, double columnMs)
{
    m_points.clear();
    m_runs.clear();
    m_runBegin = 0;
    m_hasColumn = false;
    const double width = columnMs > 0 ? columnMs : 1;

    const int from = samples.firstFrom(beginMs);
    const double entry = samples.interpolated(beginMs); // where the line comes in from the left
    if (std::isfinite(entry))
        put({0, entry}, std::floor(double(beginMs) / width));
    for (int i = from; i < samples.size() && samples.at(i).timeMs <= endMs; ++i) {
        const auto& [timeMs, value] = samples.at(i);
        if (std::isfinite(value))
            put({double(timeMs - beginMs), value}, std::floor(double(timeMs) / width));
        else
            endRun();
    }
    endRun();
}

void CurveReducer::put(const QPointF& point, double column)
{
    if (m_hasColumn && column == m_column) {
        if (point.y() < m_least.y())
            m_least = point;
        if (point.y() > m_greatest.y())
            m_greatest = point;
        m_last = point;
        return;
    }
    endColumn();
    m_hasColumn = true;
    m_column = column;
    m_least = m_greatest = m_last = point;
    m_points.push_back(point);
}

void CurveReducer::endColumn()
{
    if (!m_hasColumn)
        return;
    m_hasColumn = false;
    const bool isLeastFirst = m_least.x() <= m_greatest.x();
    for (const QPointF& point : {isLeastFirst ? m_least : m_greatest, isLeastFirst ? m_greatest : m_least, m_last}) {
        if (point != m_points.back())
            m_points.push_back(point);
    }
}

void CurveReducer::endRun()
{
    endColumn();
    const int count = static_cast<int>(m_points.size()) - m_runBegin;
    if (count > 0)
        m_runs.push_back({m_runBegin, count});
    m_runBegin += count;
}
