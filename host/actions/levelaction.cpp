#include "host/actions/levelaction.h"

#include "platform/core/tesselinterface.h"

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
    return copyFor(shape, *this);
}

void LevelAction::applyToShape(bool)
{
    const std::optional<double> level = share(m_low, m_high);
    if (shape())
        shape()->setNamedProperty(QStringLiteral("Level"), level ? QVariant(*level) : QVariant());
}
