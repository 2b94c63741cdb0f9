#include "host/actions/rotationaction.h"

#include "platform/core/tesselinterface.h"

QString RotationAction::name() const
{
    return tr("Rotation");
}

const std::vector<ActionSetting>& RotationAction::settingTable() const
{
    static const std::vector<ActionSetting> table = {
        ActionSettings::of<&RotationAction::m_low>("Low"),
        ActionSettings::of<&RotationAction::m_high>("High"),
        ActionSettings::of<&RotationAction::m_lowAngle>("LowAngle"),
        ActionSettings::of<&RotationAction::m_highAngle>("HighAngle"),
    };
    return table;
}

QStringList RotationAction::drivenProperties() const
{
    return {QStringLiteral("Rotation")};
}

ScadaTagActionInterface* RotationAction::clone(TesselInterface* shape) const
{
    return copyFor(shape, *this);
}

void RotationAction::applyToShape(bool)
{
    const std::optional<double> turned = share(m_low, m_high);
    if (turned && shape())
        shape()->setNamedProperty(QStringLiteral("Rotation"), m_lowAngle + *turned * (m_highAngle - m_lowAngle));
}
