#include "host/actions/positionaction.h"

#include "platform/core/tesselinterface.h"

#include <algorithm>

QString PositionAction::name() const
{
    return tr("Position");
}

const std::vector<ActionSetting>& PositionAction::settingTable() const
{
    static const std::vector<ActionSetting> table = {
        ActionSettings::of<&PositionAction::m_low>("Low"),
        ActionSettings::of<&PositionAction::m_high>("High"),
        ActionSettings::of<&PositionAction::m_distanceX>("DistanceX"),
        ActionSettings::of<&PositionAction::m_distanceY>("DistanceY"),
    };
    return table;
}

QStringList PositionAction::drivenProperties() const
{
    return {QStringLiteral("Position")};
}

ScadaTagActionInterface* PositionAction::clone(TesselInterface* shape) const
{
    auto* copy = new PositionAction(*this);
    copy->setShape(shape);
    return copy;
}

void PositionAction::runItSelf(CanvasScadaActionManagerInterface* manager, KorvaneScadaCoreInterface* core)
{
    TagAction::runItSelf(manager, core);
    if (shape())
        m_home = shape()->namedProperty(QStringLiteral("Position")).toPointF();
}

void PositionAction::applyToShape(bool)
{
    bool isNumber = false;
    const double number = value().toDouble(&isNumber);
    if (!isNumber || !shape() || m_low == m_high)
        return;
    const double share = std::clamp((number - m_low) / (m_high - m_low), 0.0, 1.0);
    shape()->setNamedProperty(QStringLiteral("Position"), m_home + share * QPointF(m_distanceX, m_distanceY));
}
