#pragma once

#include <QHash>

#include <set>
#include <tuple>

/// Alarms that wait for an operator, by number, of which the most urgent one is known at any time.
class WaitingAlarms
{
public:
    /// Adds an alarm, or gives it another place: the higher severity comes first, then the later time.
    void put(quint64 id, int severity, qint64 timeMs)
    {
        take(id);
        const Rank rank{severity, timeMs, id};
        m_byRank.insert(rank);
        m_ranks.insert(id, rank);
    }
    /// Takes an alarm out, if it is there.
    void take(quint64 id)
    {
        const auto known = m_ranks.find(id);
        if (known == m_ranks.end())
            return;
        m_byRank.erase(*known);
        m_ranks.erase(known);
    }
    void clear()
    {
        m_byRank.clear();
        m_ranks.clear();
    }
    /// The most urgent one; 0 for none.
    quint64 first() const { return m_byRank.empty() ? 0 : std::get<2>(*m_byRank.rbegin()); }
    int count() const { return m_ranks.size(); }
    bool contains(quint64 id) const { return m_ranks.contains(id); }

private:
    using Rank = std::tuple<int, qint64, quint64>;

    std::set<Rank> m_byRank;
    QHash<quint64, Rank> m_ranks;
};
