#include "host/actions/numberaction.h"

#include "platform/core/tesselinterface.h"

#include <cmath>

QString NumberAction::name() const
{
    return tr("Number");
}

const std::vector<ActionSetting>& NumberAction::settingTable() const
{
    static const std::vector<ActionSetting> table = {
        ActionSettings::of<&NumberAction::m_property>("Property"),
        ActionSettings::of<&NumberAction::m_factor>("Factor"),
        ActionSettings::of<&NumberAction::m_offset>("Offset"),
    };
    return table;
}

QStringList NumberAction::drivenProperties() const
{
    return {m_property};
}

ScadaTagActionInterface* NumberAction::clone(TesselInterface* shape) const
{
    return copyFor(shape, *this);
}

void NumberAction::applyToShape(bool)
{
    bool isNumber = false;
    const double number = value().toDouble(&isNumber) * m_factor + m_offset;
    if (shape())
        shape()->setNamedProperty(m_property, isNumber && std::isfinite(number) ? QVariant(number) : QVariant());
}
