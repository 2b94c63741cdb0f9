#pragma once

#include "host/hostexport.h"

#include <QString>

#include <vector>

/// The marks of a scale of numbers at round distances, and what is written beside them.
///
/// Keeps the marks of the range that was asked for last, since a shape asks for the same at every drawing.
class KORVANE_HOST_EXPORT ScaleTicks
{
public:
    struct Tick
    {
        double value;
        QString text;
    };

    /// Marks from \p low to \p high, which may be the greater one. There are at most \p most intervals between them,
    /// a few less where the distance would not be round. None for a range without a finite, positive width.
    const std::vector<Tick>& between(double low, double high, int most);
    /// The marks that between() returned last.
    const std::vector<Tick>& shown() const { return m_ticks; }

    /// Moves \p low down and \p high up to where marks would stand, \p most intervals between them; a range without
    /// width becomes one around it.
    static void widen(double& low, double& high, int most);
    /// The number with as many decimals as marks that lie \p distance apart need.
    static QString text(double value, double distance);

private:
    double m_low = 0;
    double m_high = 0;
    int m_most = 0;
    std::vector<Tick> m_ticks;
};
