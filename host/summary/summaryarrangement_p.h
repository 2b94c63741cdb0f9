#pragma once

#include "host/runtime/runtimedatabase.h"
#include "host/summary/slicedsort_p.h"
#include "host/summary/summaryfilter.h"
#include "host/summary/summaryorder_p.h"
#include "host/summary/summaryranks_p.h"

#include <memory>
#include <vector>

/// Works out anew which points are shown and in which order, a slice at a time. Values count as they are when they are read.
class SummaryArrangement
{
public:
    /// \param database, points, ranks not owned, must outlive the arrangement; the points stay as they are as long
    SummaryArrangement(const RuntimeDatabase& database, const std::vector<ObjectKey>& points, SummaryRanks& ranks,
                       const SummaryFilter& filter, int column, bool isDescending);
    Q_DISABLE_COPY(SummaryArrangement)

    /// The next slice.
    /// \returns how many points were read or placed
    int advance();
    bool isDone() const { return m_sort && m_sort->isSorted(); }

    // Once it is done:
    /// The points that are shown, by their places in the list of points.
    std::vector<int> takeRows() { return m_sort->take(); }
    /// What each point is sorted by; of those that the filter leaves out whatever their marks, nothing.
    std::vector<double> takeKeys() { return std::move(m_keys); }
    /// Of each point, whether the filter accepts it whatever its marks.
    std::vector<bool> takeScope() { return std::move(m_scope); }

    static constexpr int readAtOnce = 4096;
    static constexpr int placedAtOnce = 65536;

private:
    int read();

    const RuntimeDatabase& m_database;
    const std::vector<ObjectKey>& m_points;
    SummaryRanks& m_ranks;
    SummaryFilter m_filter;
    int m_column;
    bool m_isDescending;
    std::vector<double> m_keys;
    std::vector<bool> m_scope;
    std::vector<int> m_rows;
    std::unique_ptr<SlicedSort<SummaryOrder>> m_sort;
};
