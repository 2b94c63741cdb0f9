#include "host/checking/valuerange.h"

#include <algorithm>
#include <cmath>

using Korvane::OpType;

void ValueRange::take(OpType operation, double bound)
{
    if (std::isnan(bound)) {
        if (operation != OpType::NotEqual) {
            m_low = std::numeric_limits<double>::infinity();
            m_isLowOpen = true;
        }
        return;
    }
    const bool isStrict = operation == OpType::Less || operation == OpType::Greater;
    const bool isEqual = operation == OpType::Equal;
    if (operation == OpType::NotEqual)
        m_excluded.push_back(bound);
    if ((isEqual || operation == OpType::Greater || operation == OpType::GreaterOrEqual) && bound >= m_low) {
        m_isLowOpen = isStrict || (m_isLowOpen && bound == m_low);
        m_low = bound;
    }
    if ((isEqual || operation == OpType::Less || operation == OpType::LessOrEqual) && bound <= m_high) {
        m_isHighOpen = isStrict || (m_isHighOpen && bound == m_high);
        m_high = bound;
    }
    tighten();
}

bool ValueRange::isExcluded(double value) const
{
    return std::find(m_excluded.begin(), m_excluded.end(), value) != m_excluded.end();
}

// Brings the ends to values that the number can have.
void ValueRange::tighten()
{
    if (!m_isWhole) {
        m_isLowOpen |= isExcluded(m_low);
        m_isHighOpen |= isExcluded(m_high);
        return;
    }
    m_low = m_isLowOpen ? std::floor(m_low) + 1 : std::ceil(m_low);
    m_high = m_isHighOpen ? std::ceil(m_high) - 1 : std::floor(m_high);
    m_isLowOpen = m_isHighOpen = false;
    while (m_low <= m_high && isExcluded(m_low))
        ++m_low;
    while (m_high >= m_low && isExcluded(m_high))
        --m_high;
}

bool ValueRange::isEmpty() const
{
    return m_low > m_high || (m_low == m_high && (m_isLowOpen || m_isHighOpen));
}

bool ValueRange::contains(double value) const
{
    return !isExcluded(value) && (value > m_low || (value == m_low && !m_isLowOpen)) &&
           (value < m_high || (value == m_high && !m_isHighOpen));
}

bool ValueRange::isWithin(const ValueRange& other) const
{
    if (isEmpty())
        return true;
    const bool isLowWithin = m_low > other.m_low || (m_low == other.m_low && (m_isLowOpen || !other.m_isLowOpen));
    const bool isHighWithin =
        m_high < other.m_high || (m_high == other.m_high && (m_isHighOpen || !other.m_isHighOpen));
    return isLowWithin && isHighWithin &&
           std::none_of(other.m_excluded.begin(), other.m_excluded.end(),
                        [this](double value) { return contains(value); });
}
