#pragma once

#include <string>

#include "behaviortree_cpp/bt_factory.h"

namespace vemra::test {

// A change of one tree: TREE/NODE/KIND, where NODE is an index in creation order and KIND one of
//   exchange            the node and its next sibling change places
//   star                a Sequence becomes a SequenceStar and the like, and back
//   port/NAME=TEXT      a port says something else
//   drop                the node and all below is left out
//   succeed             the node and all below gives way to an AlwaysSuccess
//   invert              an Inverter stands above the node
struct Mutant
{
    std::string tree;
    std::size_t node = 0;
    std::string kind;
    std::string port;
    std::string text;
};

// Throws std::invalid_argument when the text is none.
Mutant parsedMutant(const std::string& text);

// The tree with the change. Throws std::invalid_argument where it cannot be made there.
BT::Tree changedTree(const BT::Tree& tree, const Mutant& mutant, const BT::BehaviorTreeFactory& factory,
                     const BT::Blackboard::Ptr& blackboard);

}  // namespace vemra::test
