#include "behaviortree_cpp/decorator_node.h"
#include "behaviortree_cpp/decorators/bb_precondition_node.h"
#include "behaviortree_cpp/decorators/counted_node.h"
#include "behaviortree_cpp/decorators/frameout_node.h"
#include "behaviortree_cpp/decorators/loop_node.h"
#include "behaviortree_cpp/decorators/repeat_node.h"
#include "behaviortree_cpp/decorators/retry_node.h"
#include "behaviortree_cpp/decorators/subtree_node.h"
#include "behaviortree_cpp/decorators/timeout_node.h"
#include "ports_macro.h"

namespace BT {

DecoratorNode::DecoratorNode(const std::string& name, const NodeParameters& parameters)
    : TreeNode(name, parameters)
{
    setLiveBelowAfterEnd(true);
}

NodeStatus DecoratorNode::executeTick()
{
    if (child_node_ == nullptr) {
        setStatus(NodeStatus::FAILURE);
        return ticked(NodeStatus::FAILURE);
    }
    return TreeNode::executeTick();
}

void DecoratorNode::halt()
{
    haltChild();
    setStatus(NodeStatus::IDLE);
}

void DecoratorNode::haltChild()
{
    if (child_node_ != nullptr)
        haltNode(*child_node_, isAtEnd());
}

CountedNode::CountedNode(const std::string& name, const char* port, int limit)
    : DecoratorNode(name), port_(port), limit_(limit)
{}

CountedNode::CountedNode(const std::string& name, const char* port, const NodeParameters& parameters)
    : DecoratorNode(name, parameters), port_(port), reads_port_(true)
{}

bool CountedNode::begin()
{
    if (on_)
        return true;
    if (reads_port_ && !getParam(port_, limit_))
        return false;
    setStatus(NodeStatus::RUNNING);
    count_ = 0;
    on_ = true;
    return true;
}

NodeStatus CountedNode::finish(NodeStatus result)
{
    on_ = false;
    haltNode(*child_node_, true);
    return result;
}

void CountedNode::halt()
{
    on_ = false;
    DecoratorNode::halt();
}

NodeStatus RetryNode::tick()
{
    if (!begin() || spent())
        return finish(NodeStatus::FAILURE);
    switch (child_node_->visit()) {
        case NodeStatus::SUCCESS:
            return finish(NodeStatus::SUCCESS);
        case NodeStatus::FAILURE:
            count();
            return spent() ? finish(NodeStatus::FAILURE) : NodeStatus::RUNNING;
        default:
            return NodeStatus::RUNNING;
    }
}

NodeStatus RepeatNode::tick()
{
    if (!begin())
        return finish(NodeStatus::FAILURE);
    if (spent())
        return finish(NodeStatus::SUCCESS);
    switch (child_node_->visit()) {
        case NodeStatus::SUCCESS:
            count();
            return spent() ? finish(NodeStatus::SUCCESS) : NodeStatus::RUNNING;
        case NodeStatus::FAILURE:
            return finish(NodeStatus::FAILURE);
        default:
            return NodeStatus::RUNNING;
    }
}

NodeStatus LoopNode::tick()
{
    if (!begin())
        return finish(NodeStatus::FAILURE);
    if (spent())
        return finish(NodeStatus::SUCCESS);
    const NodeStatus result = child_node_->visit();
    if (result == NodeStatus::SUCCESS || result == NodeStatus::FAILURE)
        count();
    return spent() ? finish(NodeStatus::SUCCESS) : NodeStatus::RUNNING;
}

NodeStatus FrameoutNode::tick()
{
    if (!begin() || spent())
        return finish(NodeStatus::FAILURE);
    count();
    const NodeStatus result = child_node_->visit();
    if (result == NodeStatus::SUCCESS || result == NodeStatus::FAILURE)
        return finish(result);
    return NodeStatus::RUNNING;
}

NodeStatus TimeoutNode::tick()
{
    const bool first = status() == NodeStatus::IDLE;
    if (!begin())
        return finish(NodeStatus::FAILURE);
    const std::int64_t now =
        blackboard() != nullptr ? blackboard()->clock().milliseconds() : SteadyClock().milliseconds();
    if (first)
        start_ms_ = now;
    const NodeStatus result = child_node_->visit();
    if (result == NodeStatus::SUCCESS || result == NodeStatus::FAILURE)
        return finish(result);
    if (!endless() && now - start_ms_ >= limit())
        return finish(NodeStatus::FAILURE);
    return NodeStatus::RUNNING;
}

NodeStatus BBPreconditionNode::tick()
{
    const Any* slot = key_.find(*this);
    const Port* expected = findPort("expected");
    std::string scratch_value;
    std::string scratch_expected;
    std::string_view wanted;
    if (slot == nullptr || slot->empty() || expected == nullptr ||
        !expected->view(wanted, scratch_expected) || slot->view(scratch_value) != wanted) {
        haltChild();
        return NodeStatus::FAILURE;
    }
    setStatus(NodeStatus::RUNNING);
    return child_node_->visit();
}

BT_PORTS(RetryNode, {"num_attempts", "1"})
BT_PORTS(RepeatNode, {"num_cycles", "1"})
BT_PORTS(LoopNode, {"num_cycles", "1"})
BT_PORTS(FrameoutNode, {"frames", "1"})
BT_PORTS(TimeoutNode, {"msec", "0"})
BT_PORTS(BBPreconditionNode, {"key", ""}, {"expected", ""})
BT_PORTS(DecoratorSubtreeNode, {"name", ""}, {"display_name", ""})

}  // namespace BT
