// Counts what the reference tree takes from the heap: bytes for each node once it is built, and allocations
// in a steady tick. Prints JSON.
#include <iostream>

#include "bench/heap_count.h"
#include "bench/reference_tree.h"

int main()
{
    using vemra::bench::heapCount;
    using vemra::bench::ReferenceTree;
    BT::BehaviorTreeFactory factory;
    ReferenceTree::registerLeaves(factory);
    // The first one brings the keys onto the blackboard, which are not the nodes' own.
    const ReferenceTree model(factory);
    const vemra::bench::TableOf table(model.tree);
    const long before = heapCount().bytes;
    const BT::Tree tree = vemra::plugin::buildTree(table.view(), factory, model.blackboard);
    const double bytes = static_cast<double>(heapCount().bytes - before) / ReferenceTree::kNodes;

    constexpr int kTicks = 1000;
    for (int i = 0; i < 3; ++i)
        tree.root_node->executeTick();
    const long allocations_before = heapCount().allocations;
    for (int i = 0; i < kTicks; ++i)
        tree.root_node->executeTick();
    const double allocations = static_cast<double>(heapCount().allocations - allocations_before) / kTicks;
    std::cout << "{\"heap_bytes_per_node\": " << bytes << ", \"allocations_per_tick\": " << allocations
              << "}\n";
    return 0;
}
