#pragma once

#include <QVariant>

#include <cmath>

/// Whether two values are equal as QVariant's operator says, quirks included: finite non-zero doubles compare fuzzily,
/// 5 equals "5", NaN equals nothing. Two doubles are told without QVariant's conversions.
inline bool isSameValue(const QVariant& a, const QVariant& b)
{
    if (a.userType() != QMetaType::Double || b.userType() != QMetaType::Double)
        return a == b;
    const double x = *static_cast<const double*>(a.constData());
    const double y = *static_cast<const double*>(b.constData());
    if (x == y)
        return true;
    return std::isfinite(x) && std::isfinite(y) && qFuzzyCompare(x, y);
}
