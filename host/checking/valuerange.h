#pragma once

#include "host/hostexport.h"
#include "platform/data/conditiondata.h"

#include <limits>
#include <vector>

/// The values that comparisons with constants leave to a number.
class KORVANE_HOST_EXPORT ValueRange
{
public:
    /// \param isWhole of a number that has whole values only, as a state
    explicit ValueRange(bool isWhole) : m_isWhole(isWhole) {}

    /// Leaves the values for which the comparison holds. Of NaN: all with "!=", else none.
    void take(Korvane::OpType operation, double bound);
    bool isEmpty() const;
    /// Whether every value of this one is one of \p other.
    bool isWithin(const ValueRange& other) const;

private:
    void tighten();
    bool isExcluded(double value) const;
    bool contains(double value) const;

    bool m_isWhole;
    double m_low = -std::numeric_limits<double>::infinity();
    double m_high = std::numeric_limits<double>::infinity();
    bool m_isLowOpen = false;
    bool m_isHighOpen = false;
    std::vector<double> m_excluded;
};
