#include "host/actions/trendaction.h"

#include "host/shapes/trend.h"
#include "platform/data/quorixdata.h"
#include "platform/data/valuemarks.h"
#include "scada/hub/canvasscadaactionmanagerinterface.h"

#include <QDateTime>

#include <algorithm>
#include <limits>

QString TrendAction::name() const
{
    return tr("Trend");
}

QStringList TrendAction::drivenProperties() const
{
    return {}; // samples are no property
}

ScadaTagActionInterface* TrendAction::clone(TesselInterface* shape) const
{
    auto* copy = new TrendAction(*this);
    copy->m_waiting.clear();
    copy->m_lastMs.clear();
    copy->setShape(shape);
    return copy;
}

bool TrendAction::updatePointValue(const QuorixData& data, Korvane::ScadaObjectType kind, unsigned int pointId)
{
    TagAction::updatePointValue(data, kind, pointId);
    const QuorixValue* time = data.GetValue("time");
    if (!time)
        return false;
    const QuorixValue* quality = data.GetValue("quality");
    const bool isGap = quality && (quality->toInt32() & (ValueMark::Invalid | ValueMark::CommunicationFailed));
    const qint64 timeMs = time->toVariant().toDateTime().toMSecsSinceEpoch();
    QList<ObjectTarget*> targets;
    collectTargets(targets);
    for (int curve = 0; curve < targets.size(); ++curve) {
        const ObjectTarget& target = *targets.at(curve);
        if (target.getPid() == static_cast<qint32>(pointId) && target.isMMDataAcceptable())
            addPoint(curve, timeMs, target.value().toDouble(), isGap);
    }
    return !m_waiting.empty();
}

// A record that comes again, as after an outage or when the page is shown again, is no new sample; a gap begins behind the
// last one.
void TrendAction::addPoint(int curve, qint64 timeMs, double value, bool isGap)
{
    const auto place = static_cast<std::size_t>(curve);
    if (m_lastMs.size() <= place)
        m_lastMs.resize(place + 1, std::numeric_limits<qint64>::min());
    qint64& lastMs = m_lastMs[place];
    if (isGap && lastMs != std::numeric_limits<qint64>::min())
        timeMs = std::max(timeMs, lastMs + 1);
    if (timeMs <= lastMs)
        return;
    lastMs = timeMs;
    m_waiting.push_back({curve, timeMs, isGap ? std::numeric_limits<double>::quiet_NaN() : value});
}

void TrendAction::applyToShape(bool)
{
    QList<ObjectTarget*> targets;
    collectTargets(targets);
    const QDateTime batchTime = manager() ? manager()->lastBatchTime() : QDateTime();
    for (int curve = 0; curve < targets.size(); ++curve) {
        const ObjectTarget& target = *targets.at(curve);
        if (!target.isMMDataAcceptable() && target.value().isValid() && batchTime.isValid())
            addPoint(curve, batchTime.toMSecsSinceEpoch(), target.value().toDouble(), false);
    }
    if (auto* trend = dynamic_cast<::Trend*>(shape())) {
        for (const Point& point : m_waiting)
            trend->addSample(point.curve, point.timeMs, point.value);
    }
    m_waiting.clear();
}
