#pragma once

#include "behaviortree_cpp/bt_factory.h"

namespace vemra::app {

class WalkField;

/// Registers a leaf that is answered by chance for each of the contract, the runtime's own aside, and the
/// same for the node that enters a tree. The field must outlive the nodes.
void registerWalkLeaves(BT::BehaviorTreeFactory& factory, WalkField& field);

}  // namespace vemra::app
