#include "host/summary/summaryarrangement_p.h"

#include "host/summary/summarycolumns.h"
#include "platform/data/quorixdata.h"

SummaryArrangement::SummaryArrangement(const RuntimeDatabase& database, const std::vector<ObjectKey>& points,
                                       SummaryRanks& ranks, const SummaryFilter& filter, int column, bool isDescending)
    : m_database(database),
      m_points(points),
      m_ranks(ranks),
      m_filter(filter),
      m_column(column),
      m_isDescending(isDescending)
{
    m_keys.reserve(points.size());
    m_scope.reserve(points.size());
}

int SummaryArrangement::advance()
{
    if (SummaryColumns::isText(m_column) && !m_ranks.isKnown(m_column))
        return m_ranks.advance(m_points, m_column);
    if (!m_sort) {
        const int done = read();
        if (m_keys.size() == m_points.size()) {
            m_sort =
                std::make_unique<SlicedSort<SummaryOrder>>(std::move(m_rows), SummaryOrder{&m_keys, m_isDescending});
        }
        return done;
    }
    m_sort->advance(placedAtOnce);
    return placedAtOnce;
}

int SummaryArrangement::read()
{
    const std::vector<double>* ranks = SummaryColumns::isText(m_column) ? &m_ranks.ranks(m_column) : nullptr;
    const std::size_t begin = m_keys.size();
    const std::size_t end = std::min(m_points.size(), begin + readAtOnce);
    for (std::size_t place = begin; place < end; ++place) {
        const ObjectKey point = m_points[place];
        const RuntimeDatabase::Object* object = m_database.object(point);
        const bool isInScope = object && m_filter.acceptsObject(*object);
        m_scope.push_back(isInScope);
        if (ranks)
            m_keys.push_back((*ranks)[place]);
        else
            m_keys.push_back(isInScope ? SummaryColumns::number(m_database, point, m_column) : 0);
        if (isInScope && (!m_filter.isLive() || m_filter.acceptsMarks(m_database.presentRecord(point))))
            m_rows.push_back(static_cast<int>(place));
    }
    return static_cast<int>(end - begin);
}
