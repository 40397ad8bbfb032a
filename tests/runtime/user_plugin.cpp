// Leaves as somebody would write them who knows nothing of this project but the public headers.
#include "runtime/user_plugin.h"

#include <chrono>
#include <string>
#include <thread>

#include "behaviortree_cpp/action_node.h"
#include "behaviortree_cpp/bt_factory.h"
#include "behaviortree_cpp/control_node.h"
#include "behaviortree_cpp/decorator_node.h"

namespace {

using BT::NodeParameters;
using BT::NodeStatus;

class DriveTo : public BT::SyncActionNode
{
public:
    DriveTo(const std::string& name, const NodeParameters& params) : BT::SyncActionNode(name, params) {}

    static const NodeParameters& requiredNodeParameters()
    {
        static NodeParameters params = {{"goal", "0;0"}};
        return params;
    }

    NodeStatus tick() override
    {
        Waypoint goal;
        if (!getParam<Waypoint>("goal", goal))
            return NodeStatus::FAILURE;
        blackboard()->set("at", goal);
        return NodeStatus::SUCCESS;
    }
};

/// Runs on a thread until it is told to stop.
class Brew : public BT::AsyncActionNode
{
public:
    Brew(const std::string& name, const NodeParameters& params) : BT::AsyncActionNode(name, params) {}
    static const NodeParameters& requiredNodeParameters()
    {
        static NodeParameters params = {{"cups", "1"}};
        return params;
    }

    NodeStatus tick() override
    {
        const int cups = getParam<int>("cups").value_or(0);
        if (cups == 0)
            throw std::runtime_error("no water");
        while (cups < 0 && !isHaltRequested())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return NodeStatus::SUCCESS;
    }
};

/// Three steps of one flow.
class Greet : public BT::CoroActionNode
{
public:
    Greet(const std::string& name) : BT::CoroActionNode(name) {}

    NodeStatus tick() override
    {
        struct Bye
        {
            BT::Blackboard& board;
            ~Bye() { board.set("greeted", "done"); }
        } bye{*blackboard()};
        for (const char* word : {"hello", "there"}) {
            blackboard()->set("greeted", word);
            setStatusRunningAndYield();
        }
        return NodeStatus::SUCCESS;
    }

    void halt() override
    {
        blackboard()->set("halted", true);
        CoroActionNode::halt();
    }
};

class Last : public BT::ControlNode
{
public:
    Last(const std::string& name) : BT::ControlNode(name, {}) {}
    NodeStatus tick() override
    {
        NodeStatus status = NodeStatus::FAILURE;
        for (std::size_t i = 0; i < childrenCount(); ++i)
            status = children_nodes_[i]->executeTick();
        if (status != NodeStatus::RUNNING)
            haltChildren(0);
        return status;
    }
};

class Twice : public BT::DecoratorNode
{
public:
    Twice(const std::string& name) : BT::DecoratorNode(name) {}
    NodeStatus tick() override
    {
        child_node_->executeTick();
        return child_node_->executeTick();
    }
};

}  // namespace

BT_REGISTER_NODES(factory)
{
    factory.registerNodeType<DriveTo>("DriveTo");
    factory.registerNodeType<Brew>("Brew");
    factory.registerNodeType<Greet>("Greet");
    factory.registerNodeType<Last>("Last");
    factory.registerNodeType<Twice>("Twice");
    factory.registerSimpleDecorator("Keep", [](NodeStatus child, BT::TreeNode&) { return child; });
}
