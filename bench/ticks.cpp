// Ticks the reference tree a given number of times and does nothing else, to be counted by callgrind:
//     valgrind --tool=callgrind --toggle-collect='BT::TreeNode::executeTick()' ...
// docs/performance.md has the whole command.
#include <cstdlib>
#include <iostream>
#include <string_view>

#include "bench/reference_tree.h"

int main(int argc, char** argv)
{
    using vemra::bench::ReferenceTree;
    const int ticks = argc > 1 ? std::atoi(argv[1]) : 1000;
    const bool constant = argc > 2 && std::string_view(argv[2]) == "constant";
    BT::BehaviorTreeFactory factory;
    ReferenceTree::registerLeaves(factory);
    const ReferenceTree reference(factory,
                                  constant ? ReferenceTree::Leaves::Constant : ReferenceTree::Leaves::Mixed);
    int ended = 0;
    for (int i = 0; i < ticks; ++i)
        ended += reference.tree.root_node->executeTick() == BT::NodeStatus::SUCCESS ? 1 : 0;
    std::cout << ended << '\n';
    return ended == ticks ? 0 : 1;
}
