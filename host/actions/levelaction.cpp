#include "host/actions/levelaction.h"

#include "platform/core/tesselinterface.h"

#include <algorithm>

QString LevelAction::name() const
{
    return tr("Fill level");
}

const std::vector<ActionSetting>& LevelAction::settingTable() const
{
    static const std::vector<ActionSetting> table = {
        ActionSettings::of<&LevelAction::m_low>("Low"),
        ActionSettings::of<&LevelAction::m_high>("High"),
    };
    return table;
}

QStringList LevelAction::drivenProperties() const
{
    return {QStringLiteral("Level")};
}

ScadaTagActionInterface* LevelAction::clone(TesselInterface* shape) const
{
    auto* copy = new LevelAction(*this);
    copy->setShape(shape);
    return copy;
}

void LevelAction::applyToShape(bool)
{
    bool isNumber = false;
    const double number = value().toDouble(&isNumber);
    if (!shape() || m_low == m_high)
        return;
    QVariant level;
    if (isNumber)
        level = std::clamp((number - m_low) / (m_high - m_low), 0.0, 1.0);
    shape()->setNamedProperty(QStringLiteral("Level"), level);
}
