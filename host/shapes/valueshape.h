#pragma once

#include "host/shapes/palette.h"
#include "host/shapes/scaleticks.h"
#include "host/shapes/shape.h"

#include <QColor>

#include <optional>
#include <vector>

/// What shows a value's place between two others: bar, gauge and tank.
///
/// "Value" is in the unit of "Minimum" and "Maximum"; "Level" is the same as a share of the range, 0 to 1. Before a
/// value is set, or after an invalid one, there is none, and the shape says so. Minimum may be above Maximum: the scale
/// then runs the other way. Where both are equal every value counts as 0.
class KORVANE_HOST_EXPORT ValueShape : public Shape
{
protected:
    explicit ValueShape(const QSizeF& size) : Shape(size) {}

    /// Value, Level, Minimum, Maximum, LowLimit, HighLimit, HasLimits and the colours.
    static std::vector<ShapeProperty> valueProperties();

    const std::optional<double>& value() const { return m_value; }
    /// The value's share of the range: below 0 and above 1 where it lies outside. 0 without a value.
    double share() const { return m_value ? shareOf(*m_value) : 0; }
    double shareOf(double number) const;
    /// Whether a limit was given that the value lies beyond.
    bool isBeyondLimit() const;
    bool hasLimits() const { return m_hasLimits; }
    double lowLimit() const { return m_lowLimit; }
    double highLimit() const { return m_highLimit; }
    /// Marks for the range, \p most intervals between them.
    const std::vector<ScaleTicks::Tick>& ticks(int most) const { return m_ticks.between(m_minimum, m_maximum, most); }

    QColor shownFill() const { return isBeyondLimit() ? m_alarmColor : m_fillColor; }
    QColor alarmColor() const { return m_alarmColor; }
    QColor lineColor() const { return m_lineColor; }
    QColor textColor() const { return m_textColor; }

private:
    static QVariant readLevel(const Shape& shape);
    static bool writeLevel(Shape& shape, const QVariant& value);

    std::optional<double> m_value;
    double m_minimum = 0;
    double m_maximum = 100;
    double m_lowLimit = 10;
    double m_highLimit = 90;
    bool m_hasLimits = false;
    QColor m_fillColor = Palette::value;
    QColor m_alarmColor = Palette::alarm;
    QColor m_lineColor = Palette::outline;
    QColor m_textColor = Palette::ink;
    mutable ScaleTicks m_ticks; ///< those drawn last
};
