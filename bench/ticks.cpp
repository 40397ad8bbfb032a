// Ticks a tree a given number of times and does nothing else, to be counted by callgrind; scripts/cost does
// it.
//     ticks COUNT [mixed|constant]              the reference tree
//     ticks COUNT grown NODES KEYS LEVELS       a tree of that size
#include <cstdlib>
#include <iostream>
#include <string_view>

#include "bench/grown_tree.h"
#include "bench/reference_tree.h"

namespace {

using vemra::bench::GrownTree;
using vemra::bench::ReferenceTree;

int tick(const BT::Tree& tree, int ticks)
{
    int ended = 0;
    for (int i = 0; i < ticks; ++i)
        ended += tree.root_node->executeTick() == BT::NodeStatus::SUCCESS ? 1 : 0;
    std::cout << ended << '\n';
    return ended == ticks ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv)
{
    const int ticks = argc > 1 ? std::atoi(argv[1]) : 1000;
    const std::string_view kind = argc > 2 ? argv[2] : "mixed";
    BT::BehaviorTreeFactory factory;
    ReferenceTree::registerLeaves(factory);
    if (kind == "grown" && argc == 6) {
        const GrownTree grown(factory, {std::atoi(argv[3]), std::atoi(argv[4]), std::atoi(argv[5])});
        return tick(grown.tree, ticks);
    }
    const ReferenceTree reference(
        factory, kind == "constant" ? ReferenceTree::Leaves::Constant : ReferenceTree::Leaves::Mixed);
    return tick(reference.tree, ticks);
}
