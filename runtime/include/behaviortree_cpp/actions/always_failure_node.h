#pragma once

#include "behaviortree_cpp/action_node.h"

namespace BT {

/// Fails at once. Ports left on it are ignored.
class AlwaysFailureNode : public SyncActionNode
{
public:
    explicit AlwaysFailureNode(const std::string& name) : SyncActionNode(name) {}

protected:
    NodeStatus tick() override { return NodeStatus::FAILURE; }
};

}  // namespace BT
