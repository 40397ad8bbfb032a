#include "bench/heap_count.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

// Process-wide, as operator new is.
std::atomic<long> g_bytes{0};
std::atomic<long> g_allocations{0};

}  // namespace

// Not inlined, or the compiler sees malloc() and free() at the call and takes them for a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size)
{
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr)
        throw std::bad_alloc();
    g_bytes += static_cast<long>(malloc_usable_size(block));
    ++g_allocations;
    return block;
}

[[gnu::noinline]] void operator delete(void* block) noexcept
{
    if (block != nullptr)
        g_bytes -= static_cast<long>(malloc_usable_size(block));
    std::free(block);
}

[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept
{
    operator delete(block);
}

namespace vemra::bench {

HeapCount heapCount()
{
    return {g_bytes, g_allocations};
}

}  // namespace vemra::bench
