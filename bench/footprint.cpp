// Counts what trees take from the heap. Prints JSON:
//     footprint            the reference tree: bytes for each node once it is built, the keys aside, and
//                          allocations in a steady tick
//     footprint trees      all trees of the plug-in, built once on one blackboard: bytes for each node, the
//                          blackboard with their keys included
#include <iostream>
#include <string_view>
#include <vector>

#include "bench/heap_count.h"
#include "bench/reference_tree.h"
#include "leaves/host/host.h"

namespace {

using vemra::bench::heapCount;

void countReferenceTree()
{
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
}

void countAllTrees()
{
    BT::BehaviorTreeFactory factory;
    factory.registerFromPlugin(VEMRA_TREES);
    vemra::leaf::LeafHost host(factory);
    host.use_runtime_builtin();
    host.register_defaults();
    const std::vector<std::string> names = factory.treeNames();
    std::vector<BT::Tree> trees;
    trees.reserve(names.size());

    const long before = heapCount().bytes;
    const auto blackboard = BT::Blackboard::create();
    std::size_t nodes = 0;
    for (const std::string& name : names) {
        trees.push_back(factory.createTree(name, blackboard));
        nodes += trees.back().nodes.size();
    }
    const double bytes = static_cast<double>(heapCount().bytes - before) / static_cast<double>(nodes);
    std::cout << "{\"trees\": " << trees.size() << ", \"nodes\": " << nodes
              << ", \"heap_bytes_per_node\": " << bytes << "}\n";
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && std::string_view(argv[1]) == "trees")
        countAllTrees();
    else
        countReferenceTree();
    return 0;
}
