#include "host/actions/stateaction.h"

#include "platform/core/tesselinterface.h"

#include <cmath>

QString StateAction::name() const
{
    return tr("State");
}

const std::vector<ActionSetting>& StateAction::settingTable() const
{
    static const std::vector<ActionSetting> table = {
        ActionSettings::of<&StateAction::m_property>("Property"),
        ActionSettings::of<&StateAction::m_offset>("Offset"),
    };
    return table;
}

QStringList StateAction::drivenProperties() const
{
    return {m_property};
}

ScadaTagActionInterface* StateAction::clone(TesselInterface* shape) const
{
    return copyFor(shape, *this);
}

int StateAction::state() const
{
    constexpr int unknown = -1;
    constexpr int farthest = 1000000; // beyond every state that a symbol has
    enum { Closed = 0, Open = 1, Travelling = 2, Contradiction = 3 };
    bool isNumber = false;
    const double first = value().toDouble(&isNumber);
    if (!isNumber || !(std::abs(first) < farthest))
        return unknown;
    if (tags().size() < 2) {
        const qint64 shown = std::llround(first) + m_offset;
        return qAbs(shown) < farthest ? static_cast<int>(shown) : unknown;
    }
    const double second = value(1).toDouble(&isNumber);
    if (!isNumber || std::isnan(second))
        return unknown;
    const bool isOpen = first != 0;
    const bool isClosed = second != 0;
    if (isOpen == isClosed)
        return isOpen ? Contradiction : Travelling;
    return isOpen ? Open : Closed;
}

void StateAction::applyToShape(bool)
{
    if (shape())
        shape()->setNamedProperty(m_property, state());
}
