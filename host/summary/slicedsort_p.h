#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

/// Sorts numbers a slice at a time, so that whoever waits for other things is not kept: short runs first, which are then
/// merged in pairs.
///
/// \tparam Less strict and total: of two numbers that differ, one comes first
template <typename Less>
class SlicedSort
{
public:
    SlicedSort(std::vector<int> numbers, Less less) : m_from(std::move(numbers)), m_less(std::move(less))
    {
        m_to.reserve(m_from.size());
    }

    bool isSorted() const { return m_width >= m_from.size(); }
    /// Sorts on, until that many numbers more have their place in a longer run.
    void advance(std::size_t most)
    {
        for (std::size_t done = 0; done < most && !isSorted();)
            done += m_width == 0 ? sortRun() : merge(most - done);
    }
    /// The numbers, once they are sorted.
    std::vector<int> take() { return std::move(m_from); }

private:
    static constexpr std::size_t runLength = 1024;

    std::size_t sortRun()
    {
        const std::size_t end = std::min(m_at + runLength, m_from.size());
        std::sort(place(m_at), place(end), m_less);
        const std::size_t done = (end - m_at) * runCost;
        m_at = end;
        if (m_at == m_from.size())
            m_width = runLength;
        return done;
    }
    std::size_t merge(std::size_t most)
    {
        std::size_t done = 0;
        for (; done < most && m_to.size() < m_from.size(); ++done) {
            if (m_left == m_leftEnd && m_right == m_rightEnd)
                openPair();
            m_to.push_back(m_from[nextPlace()++]);
        }
        if (m_to.size() == m_from.size()) {
            m_from.swap(m_to);
            m_to.clear();
            m_width *= 2;
        }
        return done;
    }
    void openPair()
    {
        m_left = m_to.size();
        m_leftEnd = std::min(m_left + m_width, m_from.size());
        m_right = m_leftEnd;
        m_rightEnd = std::min(m_right + m_width, m_from.size());
    }
    std::size_t& nextPlace()
    {
        if (m_left == m_leftEnd)
            return m_right;
        return m_right == m_rightEnd || !m_less(m_from[m_right], m_from[m_left]) ? m_left : m_right;
    }
    auto place(std::size_t at) { return m_from.begin() + static_cast<std::ptrdiff_t>(at); }

    /// How often a run's sorting compares each of its numbers, about.
    static constexpr std::size_t runCost = 10;

    std::vector<int> m_from;
    std::vector<int> m_to; ///< the longer runs, as far as they are merged
    Less m_less;
    std::size_t m_width = 0; ///< of the runs in m_from; 0 while they are made
    std::size_t m_at = 0;    ///< where the next run begins
    std::size_t m_left = 0;
    std::size_t m_leftEnd = 0;
    std::size_t m_right = 0;
    std::size_t m_rightEnd = 0;
};
