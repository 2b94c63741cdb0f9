#include "host/scriptediting/scriptcolours_p.h"

#include <cmath>

namespace {

constexpr double enoughContrast = 5.5;

double linear(double channel)
{
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour)
{
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

/// From 1 to 21, as WCAG 2 defines it.
double contrast(const QColor& a, const QColor& b)
{
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return qMax(first, second) / qMin(first, second);
}

} // namespace

QColor ScriptColours::readable(QColor colour) const
{
    constexpr int steps = 10;
    const QColor from = colour;
    for (int step = 1; step <= steps && contrast(colour, m_base) < enoughContrast; ++step)
        colour = Palette::mixed(from, m_text, double(step) / steps);
    return colour;
}
