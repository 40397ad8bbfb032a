#include "behaviortree_cpp/control_node.h"
#include "behaviortree_cpp/controls/do_while_node.h"
#include "behaviortree_cpp/controls/fallback_node.h"
#include "behaviortree_cpp/controls/fallback_star_node.h"
#include "behaviortree_cpp/controls/if_then_else_node.h"
#include "behaviortree_cpp/controls/parallel_node.h"
#include "behaviortree_cpp/controls/post_process_node.h"
#include "behaviortree_cpp/controls/sequence_node.h"
#include "behaviortree_cpp/controls/sequence_star_node.h"
#include "ports_macro.h"

// In all of these a child that gives IDLE, which is a fault of that child, counts as not yet done.

namespace BT {

ControlNode::ControlNode(const std::string& name, const NodeParameters& parameters)
    : TreeNode(name, parameters)
{
    setLiveBelowAfterEnd(true);
}

bool ControlNode::OnPort::read(const TreeNode& node, std::string_view port)
{
    bool value = true;
    return node.getParam(port, value) ? value : true;
}

void ControlNode::OnPort::look(const TreeNode& node, std::string_view port)
{
    const Port* found = node.findPort(port);
    if (found != nullptr && found->form() != PortForm::Literal)
        says_ = Says::OtherThings;
    else
        says_ = read(node, port) ? Says::On : Says::Off;
}

void ControlNode::addChild(TreeNode* child)
{
    if (child->type() == NodeType::ACTION)
        child->setCountsAsAction();
    children_nodes_.push_back(child);
}

void ControlNode::halt()
{
    haltChildren(0);
    setStatus(NodeStatus::IDLE);
}

void ControlNode::haltChildren(int first)
{
    for (std::size_t i = static_cast<std::size_t>(first); i < children_nodes_.size(); ++i)
        haltNode(*children_nodes_[i], isAtEnd());
}

void ControlNode::haltRunningBehind(std::size_t place)
{
    for (std::size_t i = place + 1; i < children_nodes_.size(); ++i)
        if (children_nodes_[i]->status() == NodeStatus::RUNNING)
            haltNode(*children_nodes_[i]);
}

NodeStatus ControlNode::endEarly(NodeStatus result)
{
    for (TreeNode* child : children_nodes_)
        if (!child->isHalted())
            child->bringToIdle(true);
    setLiveBelowAfterEnd(false);
    return result;
}

NodeStatus SequenceNode::tick()
{
    return tickInTurn(NodeStatus::SUCCESS);
}

NodeStatus FallbackNode::tick()
{
    return tickInTurn(NodeStatus::FAILURE);
}

StarNode::StarNode(const std::string& name, bool reset_on_failure)
    : ControlNode(name), reset_on_failure_(reset_on_failure)
{}

StarNode::StarNode(const std::string& name, const NodeParameters& parameters) : ControlNode(name, parameters)
{}

bool StarNode::resetsOnFailure()
{
    return reset_on_failure_ && reset_port_.isOn(*this, "reset_on_failure");
}

NodeStatus StarNode::run(NodeStatus go_on)
{
    setStatus(NodeStatus::RUNNING);
    while (place_ < children_nodes_.size()) {
        TreeNode& child = *children_nodes_[place_];
        const NodeStatus result = child.visit(child.status(), go_on);
        if (result == go_on) {
            ++place_;
            continue;
        }
        if (result != NodeStatus::SUCCESS && result != NodeStatus::FAILURE)
            return NodeStatus::RUNNING;
        const bool keep = result == NodeStatus::FAILURE && !resetsOnFailure();
        if (!keep)
            place_ = 0;
        endEarly(result);
        setLiveBelowAfterEnd(keep);  // so that a halt comes by
        return result;
    }
    place_ = 0;
    return end(go_on);
}

void StarNode::halt()
{
    if (!isAtEnd())
        place_ = 0;
    ControlNode::halt();
}

NodeStatus IfThenElseNode::tick()
{
    setStatus(NodeStatus::RUNNING);
    if (children_nodes_.size() != 3)
        return end(NodeStatus::FAILURE);
    const NodeStatus condition = children_nodes_[0]->visit();
    if (condition != NodeStatus::SUCCESS && condition != NodeStatus::FAILURE)
        return NodeStatus::RUNNING;
    TreeNode& selected = *children_nodes_[condition == NodeStatus::SUCCESS ? 1 : 2];
    TreeNode& other = *children_nodes_[condition == NodeStatus::SUCCESS ? 2 : 1];
    if (other.status() != NodeStatus::IDLE && halt_port_.isOn(*this, "halt_on_switch"))
        haltNode(other);
    const NodeStatus result = selected.visit();
    if (result != NodeStatus::SUCCESS && result != NodeStatus::FAILURE)
        return NodeStatus::RUNNING;
    return end(result);
}

NodeStatus IfThenElseStarNode::tick()
{
    setStatus(NodeStatus::RUNNING);
    if (children_nodes_.size() != 3)
        return end(NodeStatus::FAILURE);
    if (turn_ == 0) {
        const NodeStatus condition = children_nodes_[0]->visit();
        if (condition != NodeStatus::SUCCESS && condition != NodeStatus::FAILURE)
            return NodeStatus::RUNNING;
        turn_ = condition == NodeStatus::SUCCESS ? 1 : 2;
    }
    const NodeStatus result = children_nodes_[turn_]->visit();
    if (result != NodeStatus::SUCCESS && result != NodeStatus::FAILURE)
        return NodeStatus::RUNNING;
    const bool keep = result == NodeStatus::FAILURE && !reset_port_.isOn(*this, "reset_on_failure");
    if (!keep)
        turn_ = 0;
    end(result);
    setLiveBelowAfterEnd(keep);  // so that a halt comes by
    return result;
}

void IfThenElseStarNode::halt()
{
    if (!isAtEnd())
        turn_ = 0;
    ControlNode::halt();
}

NodeStatus DoWhileNode::tick()
{
    setStatus(NodeStatus::RUNNING);
    if (children_nodes_.empty())
        return NodeStatus::FAILURE;
    NodeStatus result = NodeStatus::RUNNING;
    for (TreeNode* child : children_nodes_)
        result = child->visit();
    if (result != NodeStatus::SUCCESS && result != NodeStatus::FAILURE)
        return NodeStatus::RUNNING;
    return end(result);
}

NodeStatus ParallelNode::tick()
{
    if (status() == NodeStatus::IDLE && reads_port_ && !getParam("threshold", threshold_))
        return end(NodeStatus::FAILURE);
    setStatus(NodeStatus::RUNNING);
    const auto children = static_cast<std::int64_t>(children_nodes_.size());
    std::int64_t successes = 0;
    std::int64_t failures = 0;
    for (TreeNode* child : children_nodes_) {
        const NodeStatus result = child->visit();
        if (result == NodeStatus::SUCCESS && ++successes >= threshold_)
            return end(NodeStatus::SUCCESS);
        if (result == NodeStatus::FAILURE && ++failures > children - threshold_)
            return end(NodeStatus::FAILURE);
    }
    return NodeStatus::RUNNING;
}

NodeStatus PostProcessNode::tick()
{
    setStatus(NodeStatus::RUNNING);
    if (children_nodes_.size() != 2)
        return end(NodeStatus::FAILURE);
    if (main_result_ == NodeStatus::IDLE) {
        const NodeStatus result = children_nodes_[0]->visit();
        if (result != NodeStatus::SUCCESS && result != NodeStatus::FAILURE)
            return NodeStatus::RUNNING;
        main_result_ = result;
    }
    const NodeStatus final_result = children_nodes_[1]->visit();
    if (final_result != NodeStatus::SUCCESS && final_result != NodeStatus::FAILURE)
        return NodeStatus::RUNNING;
    const NodeStatus result = main_result_;
    main_result_ = NodeStatus::IDLE;
    return end(result);
}

void PostProcessNode::halt()
{
    const bool main_child_ran = status() == NodeStatus::RUNNING && main_result_ == NodeStatus::IDLE;
    if (main_child_ran && children_nodes_.size() == 2) {
        haltNode(*children_nodes_[0]);
        main_result_ = NodeStatus::FAILURE;  // a final child that throws is not ticked by the next halt
        if (tick_port_.isOn(*this, "tick_on_halt"))
            children_nodes_[1]->visit();
    }
    main_result_ = NodeStatus::IDLE;
    ControlNode::halt();
}

BT_PORTS(SequenceStarNode, {"reset_on_failure", "true"})
BT_PORTS(FallbackStarNode, {"reset_on_failure", "true"})
BT_PORTS(IfThenElseNode, {"halt_on_switch", "true"})
BT_PORTS(IfThenElseStarNode, {"reset_on_failure", "true"})
BT_PORTS(ParallelNode, {"threshold", "1"})
BT_PORTS(PostProcessNode, {"tick_on_halt", "true"})

}  // namespace BT
