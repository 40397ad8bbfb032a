#pragma once

#include "behaviortree_cpp/action_node.h"

namespace BT {

/// Writes `value` under `key`. A value that is a reference as a whole is copied with its type; any other is
/// written as text. FAILURE, nothing written, when `key` or `value` is missing, `key` names nothing, or the
/// key referred to is not there.
class SetBlackboardNode : public SyncActionNode
{
public:
    SetBlackboardNode(const std::string& name, const NodeParameters& parameters)
        : SyncActionNode(name, parameters)
    {}

    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;

private:
    /// The tick where the key is not known yet, or not to what it holds already.
    [[gnu::noinline]] NodeStatus write();

    KeyPort key_{"key"};
    const Port* value_ = nullptr;  ///< looked for once
};

}  // namespace BT
