#pragma once

#include <cstddef>
#include <vector>

/// Which of two points comes first, by what they have in the column that is sorted by; points that are equal there follow each
/// other as in the list of points, whichever way it is sorted.
struct SummaryOrder
{
    const std::vector<double>* keys; ///< of all points
    bool isDescending;

    bool operator()(int a, int b) const
    {
        const double left = (*keys)[static_cast<std::size_t>(a)];
        const double right = (*keys)[static_cast<std::size_t>(b)];
        if (left != right)
            return (left < right) != isDescending;
        return a < b;
    }
};
