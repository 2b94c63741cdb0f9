#pragma once

#include <cstddef>

/// Counts the heap allocations of this process from its construction on: operator new, malloc and its kin, so Qt's
/// containers are counted too. One thread.
class AllocationCounter
{
public:
    AllocationCounter();
    std::size_t count() const;
    /// Bytes of the largest one since a counter was last made.
    std::size_t largest() const;

private:
    std::size_t m_start;
};
