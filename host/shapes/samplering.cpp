#include "host/shapes/samplering.h"

#include <cmath>
#include <limits>

bool SampleRing::add(Entry entry)
{
    if (!isEmpty() && entry.timeMs < newest().timeMs)
        return false;
    if (!std::isfinite(entry.value))
        entry.value = std::numeric_limits<double>::quiet_NaN();
    if (size() < m_capacity) {
        m_entries.push_back(entry);
        return true;
    }
    m_entries[std::size_t(m_oldest)] = entry;
    m_oldest = m_oldest + 1 < size() ? m_oldest + 1 : 0;
    return true;
}

void SampleRing::clear()
{
    m_entries.clear();
    m_oldest = 0;
}

int SampleRing::firstFrom(qint64 timeMs) const
{
    int begin = 0;
    int end = size();
    while (begin < end) {
        const int middle = begin + (end - begin) / 2;
        if (at(middle).timeMs < timeMs)
            begin = middle + 1;
        else
            end = middle;
    }
    return begin;
}

double SampleRing::interpolated(qint64 timeMs) const
{
    const int next = firstFrom(timeMs);
    if (next == size())
        return std::numeric_limits<double>::quiet_NaN();
    const Entry& after = at(next);
    if (after.timeMs == timeMs)
        return after.value;
    if (next == 0)
        return std::numeric_limits<double>::quiet_NaN();
    const Entry& before = at(next - 1);
    const double share = double(timeMs - before.timeMs) / double(after.timeMs - before.timeMs);
    return before.value * (1 - share) + after.value * share;
}
