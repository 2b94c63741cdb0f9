#include "host/actions/trendaction.h"

#include "host/shapes/trend.h"
#include "platform/data/quorixdata.h"
#include "platform/data/valuemarks.h"

#include <QDateTime>

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
    copy->setShape(shape);
    return copy;
}

bool TrendAction::updatePointValue(const QuorixData& data, Korvane::ScadaObjectType kind, unsigned int pointId)
{
    TagAction::updatePointValue(data, kind, pointId);
    const QuorixValue* time = data.GetValue("time");
    const QuorixValue* value = data.GetValue("value");
    if (!time || !value)
        return false;
    const QuorixValue* quality = data.GetValue("quality");
    const bool isGap = quality && (quality->toInt32() & (ValueMark::Invalid | ValueMark::CommunicationFailed));
    const qint64 timeMs = time->toVariant().toDateTime().toMSecsSinceEpoch();
    QList<ObjectTarget*> targets;
    collectTargets(targets);
    bool isNew = false;
    for (int curve = 0; curve < targets.size(); ++curve) {
        if (targets.at(curve)->getPid() != static_cast<qint32>(pointId))
            continue;
        m_waiting.push_back({curve, timeMs, isGap ? std::numeric_limits<double>::quiet_NaN() : value->toDouble()});
        isNew = true;
    }
    return isNew;
}

void TrendAction::applyToShape(bool)
{
    if (auto* trend = dynamic_cast<::Trend*>(shape())) {
        for (const Point& point : m_waiting)
            trend->addSample(point.curve, point.timeMs, point.value);
    }
    m_waiting.clear();
}
