// Builds the reference tree from tables a given number of times and does nothing else, to be counted by
// callgrind.
#include <cstdlib>
#include <iostream>

#include "bench/reference_tree.h"
#include "plugin/tree_table.h"

int main(int argc, char** argv)
{
    using vemra::bench::ReferenceTree;
    const int builds = argc > 1 ? std::atoi(argv[1]) : 100;
    BT::BehaviorTreeFactory factory;
    ReferenceTree::registerLeaves(factory);
    const ReferenceTree model(factory);
    const vemra::bench::TableOf table(model.tree);
    std::size_t nodes = 0;
    for (int i = 0; i < builds; ++i)
        nodes += vemra::plugin::buildTree(table.view(), factory, model.blackboard).nodes.size();
    std::cout << nodes << '\n';
    return nodes == model.tree.nodes.size() * static_cast<std::size_t>(builds) ? 0 : 1;
}
