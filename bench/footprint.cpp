// Counts what the reference tree takes from the heap: bytes for each node once it is built, and allocations
// in a steady tick. Prints JSON.
#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <iostream>
#include <new>

#include "bench/reference_tree.h"

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

int main()
{
    using vemra::bench::ReferenceTree;
    BT::BehaviorTreeFactory factory;
    ReferenceTree::registerLeaves(factory);
    // A first one brings the keys onto the blackboard, which are not the nodes' own.
    const auto blackboard = BT::Blackboard::create<BT::BlackboardLocal>();
    const ReferenceTree first(factory, ReferenceTree::Leaves::Mixed, blackboard);
    const long before = g_bytes;
    const ReferenceTree reference(factory, ReferenceTree::Leaves::Mixed, blackboard);
    const double bytes = static_cast<double>(g_bytes - before) / ReferenceTree::kNodes;

    constexpr int kTicks = 1000;
    for (int i = 0; i < 3; ++i)
        reference.tree.root_node->executeTick();
    const long allocations_before = g_allocations;
    for (int i = 0; i < kTicks; ++i)
        reference.tree.root_node->executeTick();
    const double allocations = static_cast<double>(g_allocations - allocations_before) / kTicks;
    std::cout << "{\"heap_bytes_per_node\": " << bytes << ", \"allocations_per_tick\": " << allocations
              << "}\n";
    return 0;
}
