#include "host/summary/summaryranks_p.h"

#include "host/summary/summarycolumns.h"

#include <numeric>

bool SummaryRanks::Less::operator()(int a, int b) const
{
    const Text& left = (*texts)[static_cast<std::size_t>(a)];
    const Text& right = (*texts)[static_cast<std::size_t>(b)];
    const int folded = left.folded.compare(right.folded);
    const int compared = folded != 0 ? folded : left.text.compare(right.text);
    return compared != 0 ? compared < 0 : a < b;
}

void SummaryRanks::clear()
{
    m_ranks.clear();
    m_column = -1;
}

int SummaryRanks::advance(const std::vector<ObjectKey>& points, int column)
{
    if (m_column != column) {
        m_column = column;
        m_sort.reset();
        m_texts.clear();
        m_texts.reserve(points.size());
        m_sorted.clear();
        m_numbered = 0;
    }
    if (!m_sort) {
        const int done = read(points);
        if (m_texts.size() == points.size()) {
            std::vector<int> numbers(points.size());
            std::iota(numbers.begin(), numbers.end(), 0);
            m_sort = std::make_unique<Sort>(std::move(numbers), Less{&m_texts});
        }
        return done;
    }
    if (!m_sort->isSorted()) {
        m_sort->advance(placedAtOnce);
        return placedAtOnce;
    }
    return number();
}

int SummaryRanks::read(const std::vector<ObjectKey>& points)
{
    const std::size_t begin = m_texts.size();
    const std::size_t end = std::min(points.size(), begin + readAtOnce);
    for (std::size_t place = begin; place < end; ++place) {
        const RuntimeDatabase::Object* object = m_database.object(points[place]);
        const QString text = object ? SummaryColumns::constantText(*object, m_column) : QString();
        m_texts.push_back({text.toCaseFolded(), text});
    }
    return static_cast<int>(end - begin);
}

int SummaryRanks::number()
{
    if (m_sorted.empty()) {
        m_sorted = m_sort->take();
        m_new.assign(m_texts.size(), 0);
    }
    const std::size_t begin = m_numbered;
    m_numbered = std::min(m_sorted.size(), begin + placedAtOnce);
    for (std::size_t place = begin; place < m_numbered; ++place) {
        const auto point = static_cast<std::size_t>(m_sorted[place]);
        if (place == 0)
            continue;
        const auto before = static_cast<std::size_t>(m_sorted[place - 1]);
        m_new[point] = m_new[before] + (m_texts[point].text == m_texts[before].text ? 0 : 1);
    }
    const auto done = static_cast<int>(m_numbered - begin);
    if (m_numbered == m_sorted.size()) {
        m_ranks[m_column] = std::move(m_new);
        m_column = -1;
        m_texts = {};
        m_sort.reset();
        m_sorted = {};
    }
    return done;
}
