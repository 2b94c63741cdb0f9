#pragma once

#include "host/runtime/runtimedatabase.h"
#include "host/summary/slicedsort_p.h"

#include <QString>

#include <map>
#include <memory>
#include <vector>

/// The places that points have by their texts: comparing two of them costs no comparison of texts. Worked out once for each
/// column that is sorted by, a slice at a time.
class SummaryRanks
{
public:
    explicit SummaryRanks(const RuntimeDatabase& database) : m_database(database) {}

    /// Forgets everything: for other points.
    void clear();
    bool isKnown(int column) const { return m_ranks.find(column) != m_ranks.end(); }
    /// Goes on with a column that is not known yet; leaves another one that was begun.
    /// \returns how many texts were read, placed or numbered
    int advance(const std::vector<ObjectKey>& points, int column);
    /// Of the points, the same for equal texts; the column must be known.
    const std::vector<double>& ranks(int column) const { return m_ranks.at(column); }

    static constexpr int readAtOnce = 8192;
    static constexpr int placedAtOnce = 16384;

private:
    struct Text
    {
        QString folded;
        QString text;
    };
    struct Less
    {
        const std::vector<Text>* texts;
        bool operator()(int a, int b) const;
    };
    using Sort = SlicedSort<Less>;

    int read(const std::vector<ObjectKey>& points);
    int number();

    const RuntimeDatabase& m_database;
    std::map<int, std::vector<double>> m_ranks;
    int m_column = -1; ///< that is being worked out
    std::vector<Text> m_texts;
    std::unique_ptr<Sort> m_sort;
    std::vector<int> m_sorted; ///< once the texts are
    std::vector<double> m_new; ///< ranks of the column that is being worked out
    std::size_t m_numbered = 0;
};
