#pragma once

#include "host/hostexport.h"

#include <QtGlobal>

#include <vector>

/// The last samples of one curve, oldest first: a ring that forgets the oldest when it is full.
///
/// Adding takes constant time; memory grows with the samples up to the capacity and no further.
class KORVANE_HOST_EXPORT SampleRing
{
public:
    struct Entry
    {
        qint64 timeMs; ///< since 1970 in UTC
        double value;  ///< NaN for a gap
    };

    explicit SampleRing(int capacity) : m_capacity(capacity) {}

    /// \returns false, with nothing added, for a sample older than the newest: the ring is in order of time.
    bool add(Entry entry);
    void clear();

    int size() const { return static_cast<int>(m_entries.size()); }
    bool isEmpty() const { return m_entries.empty(); }
    /// \param index 0 for the oldest
    const Entry& at(int index) const
    {
        const int place = m_oldest + index;
        return m_entries[std::size_t(place < size() ? place : place - size())];
    }
    const Entry& newest() const { return at(size() - 1); }
    /// Index of the first entry at \p timeMs or later; size() when there is none.
    int firstFrom(qint64 timeMs) const;
    /// The value at \p timeMs on the straight line between its neighbours; NaN where a neighbour is missing or a gap.
    double interpolated(qint64 timeMs) const;

private:
    int m_capacity;
    int m_oldest = 0; ///< its place in m_entries
    std::vector<Entry> m_entries;
};
