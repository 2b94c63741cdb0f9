#include "host/actions/rotationaction.h"

#include "platform/core/tesselinterface.h"

#include <algorithm>

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
    auto* copy = new RotationAction(*this);
    copy->setShape(shape);
    return copy;
}

void RotationAction::applyToShape(bool)
{
    bool isNumber = false;
    const double number = value().toDouble(&isNumber);
    if (!isNumber || !shape() || m_low == m_high)
        return;
    const double share = std::clamp((number - m_low) / (m_high - m_low), 0.0, 1.0);
    shape()->setNamedProperty(QStringLiteral("Rotation"), m_lowAngle + share * (m_highAngle - m_lowAngle));
}
