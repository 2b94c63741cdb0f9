#include "tests/support/allocationcounter.h"

#include <atomic>
#include <cstdlib>

namespace {

std::atomic<std::size_t> allocations{0};
std::atomic<std::size_t> largestBytes{0};

void note(std::size_t bytes)
{
    allocations.fetch_add(1, std::memory_order_relaxed);
    if (bytes > largestBytes.load(std::memory_order_relaxed))
        largestBytes.store(bytes, std::memory_order_relaxed);
}

} // namespace

#ifdef KORVANE_COUNT_BY_SANITIZER

#include <sanitizer/allocator_interface.h>

namespace {

void countAllocation(const volatile void*, std::size_t size)
{
    note(size);
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
    note(size);
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) noexcept
{
    note(count * size);
    return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) noexcept
{
    note(size);
    return __libc_realloc(block, size);
}
}

#endif

AllocationCounter::AllocationCounter() : m_start(allocations.load())
{
    largestBytes = 0;
}

std::size_t AllocationCounter::count() const
{
    return allocations.load() - m_start;
}

std::size_t AllocationCounter::largest() const
{
    return largestBytes.load();
}
