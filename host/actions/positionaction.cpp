#include "host/actions/positionaction.h"

#include "platform/core/tesselinterface.h"

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
    return copyFor(shape, *this);
}

void PositionAction::runItSelf(CanvasScadaActionManagerInterface* manager, KorvaneScadaCoreInterface* core)
{
    TagAction::runItSelf(manager, core);
    if (shape())
        m_home = shape()->namedProperty(QStringLiteral("Position")).toPointF();
}

void PositionAction::applyToShape(bool)
{
    const std::optional<double> moved = share(m_low, m_high);
    if (moved && shape())
        shape()->setNamedProperty(QStringLiteral("Position"), m_home + *moved * QPointF(m_distanceX, m_distanceY));
}
