#pragma once

namespace vemra::bench {

/// What the process has taken from the heap: a program that links heap_count.cpp counts it.
struct HeapCount
{
    long bytes = 0;        ///< held now
    long allocations = 0;  ///< so far
};

[[nodiscard]] HeapCount heapCount();

}  // namespace vemra::bench
