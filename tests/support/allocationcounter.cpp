#include "tests/support/allocationcounter.h"

#include <atomic>
#include <cstdlib>

namespace {
std::atomic<std::size_t> allocations{0};
}

#ifdef KORVANE_COUNT_BY_SANITIZER

#include <sanitizer/allocator_interface.h>

namespace {

void countAllocation(const volatile void*, std::size_t)
{
    allocations.fetch_add(1, std::memory_order_relaxed);
}

const int installed = __sanitizer_install_malloc_and_free_hooks(&countAllocation, [](const volatile void*) {});

} // namespace

#else

// The program's own definitions stand before the C library's for every shared library it loads.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size) noexcept
{
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) noexcept
{
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) noexcept
{
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_realloc(block, size);
}
}

#endif

AllocationCounter::AllocationCounter() : m_start(allocations.load())
{
}

std::size_t AllocationCounter::count() const
{
    return allocations.load() - m_start;
}
