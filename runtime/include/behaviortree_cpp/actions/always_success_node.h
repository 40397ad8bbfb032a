#pragma once

#include "behaviortree_cpp/action_node.h"

namespace BT {

/// Succeeds at once. Ports left on it are ignored.
class AlwaysSuccessNode : public SyncActionNode
{
public:
    explicit AlwaysSuccessNode(const std::string& name) : SyncActionNode(name) {}

protected:
    NodeStatus tick() override { return NodeStatus::SUCCESS; }
};

}  // namespace BT
