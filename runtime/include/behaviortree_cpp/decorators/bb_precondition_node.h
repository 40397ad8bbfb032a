#pragma once

#include "behaviortree_cpp/decorator_node.h"

namespace BT {

/// Guards its child by a key: on every tick the text under `key` is compared with `expected`. Equal: the
/// child is ticked and its result is the node's. Different, or the key is not there: a running child is
/// halted, and that is FAILURE.
class BBPreconditionNode : public DecoratorNode
{
public:
    BBPreconditionNode(const std::string& name, const NodeParameters& parameters)
        : DecoratorNode(name, parameters)
    {}

    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;

private:
    KeyPort key_{"key"};
};

}  // namespace BT
