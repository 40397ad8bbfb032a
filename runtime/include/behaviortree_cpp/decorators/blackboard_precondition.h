#pragma once

#include "behaviortree_cpp/decorator_node.h"

namespace BT {

/// `BlackboardCheckInt`, `BlackboardCheckDouble`, `BlackboardCheckString`: the child is ticked while the
/// value of `key` is `expected`; "*" expects no more than that there is one. `key` is a reference or a key's
/// name. Else a running child is halted, and the result is `return_on_mismatch`, FAILURE when that is left
/// off.
template <class T>
class BlackboardPreconditionNode : public DecoratorNode
{
public:
    BlackboardPreconditionNode(const std::string& name, const NodeParameters& parameters)
        : DecoratorNode(name, parameters)
    {}

    static const NodeParameters& requiredNodeParameters()
    {
        static const NodeParameters kPorts{{"key", ""}, {"expected", "*"}, {"return_on_mismatch", "FAILURE"}};
        return kPorts;
    }

protected:
    NodeStatus tick() override
    {
        setStatus(NodeStatus::RUNNING);
        if (matches())
            return child_node_->executeTick();
        haltChild();
        return getParam<NodeStatus>("return_on_mismatch").value_or(NodeStatus::FAILURE);
    }

private:
    [[nodiscard]] bool matches() const
    {
        const Port* key = findPort("key");
        T value{};
        if (key == nullptr)
            return false;
        if (key->form() == PortForm::Literal) {
            if (blackboard() == nullptr || !blackboard()->get(key->raw(), value))
                return false;
        } else if (!getParam("key", value))
            return false;
        const Port* expected = findPort("expected");
        if (expected != nullptr && expected->raw() == "*")
            return true;
        T wanted{};
        return getParam("expected", wanted) && value == wanted;
    }
};

}  // namespace BT
