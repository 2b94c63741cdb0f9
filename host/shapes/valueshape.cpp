#include "host/shapes/valueshape.h"

#include "host/shapes/shapeproperty.h"

#include <algorithm>

std::vector<ShapeProperty> ValueShape::valueProperties()
{
    using namespace ShapeProperties;
    return {
        of<&ValueShape::m_value>("Value", false),
        {QLatin1String("Level"), ShapeProperty::Kind::Number, readLevel, writeLevel, false},
        of<&ValueShape::m_minimum>("Minimum"),
        of<&ValueShape::m_maximum>("Maximum"),
        of<&ValueShape::m_lowLimit>("LowLimit"),
        of<&ValueShape::m_highLimit>("HighLimit"),
        of<&ValueShape::m_hasLimits>("HasLimits"),
        of<&ValueShape::m_fillColor>("FillColor"),
        of<&ValueShape::m_alarmColor>("AlarmColor"),
        of<&ValueShape::m_lineColor>("LineColor"),
        of<&ValueShape::m_textColor>("TextColor"),
    };
}

QVariant ValueShape::readLevel(const Shape& shape)
{
    const auto& self = static_cast<const ValueShape&>(shape);
    return self.m_value ? QVariant(std::clamp(self.share(), 0.0, 1.0)) : QVariant();
}

bool ValueShape::writeLevel(Shape& shape, const QVariant& value)
{
    auto& self = static_cast<ValueShape&>(shape);
    std::optional<double> level;
    if (!ShapeProperties::convert(value, level))
        return false;
    if (level) {
        const double share = std::clamp(*level, 0.0, 1.0);
        level = self.m_minimum * (1 - share) + self.m_maximum * share;
    }
    if (level == self.m_value)
        return true;
    self.m_value = level;
    self.changed();
    return true;
}

double ValueShape::shareOf(double number) const
{
    const double range = m_maximum / 2 - m_minimum / 2; // halves, since the whole may be beyond what a double holds
    return range == 0 ? 0 : (number / 2 - m_minimum / 2) / range;
}

bool ValueShape::isBeyondLimit() const
{
    return m_hasLimits && m_value && (*m_value < m_lowLimit || *m_value > m_highLimit);
}
