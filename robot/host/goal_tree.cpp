#include "robot/host/goal_tree.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "behaviortree_cpp/control_node.h"
#include "behaviortree_cpp/decorator_node.h"

namespace vemra::robot {
namespace {

/// Makes nodes into a tree, parents before children.
class Planter
{
public:
    Planter(const BT::BehaviorTreeFactory& factory, BT::Blackboard::Ptr blackboard)
        : factory_(factory), blackboard_(std::move(blackboard))
    {}

    BT::TreeNode& add(BT::TreeNode* parent, const std::string& id, const BT::NodeParameters& ports = {})
    {
        nodes_.push_back(factory_.instantiateTreeNode(id, id, ports, blackboard_));
        BT::TreeNode& node = *nodes_.back();
        if (auto* control = dynamic_cast<BT::ControlNode*>(parent))
            control->addChild(&node);
        else if (auto* decorator = dynamic_cast<BT::DecoratorNode*>(parent))
            decorator->setChild(&node);
        return node;
    }
    BT::TreeNode& sequence(BT::TreeNode* parent)
    {
        return add(parent, "SequenceStar", {{"reset_on_failure", "true"}});
    }
    void addOr(BT::TreeNode& parent, const std::string& id, const BT::NodeParameters& ports,
               const std::string& complaint)
    {
        BT::TreeNode& choice = add(&parent, "FallbackStar", {{"reset_on_failure", "true"}});
        add(&choice, id, ports);
        add(&add(&choice, "ForceFailure"), "SaySomething", {{"message", complaint}});
    }

    BT::Tree take()
    {
        BT::Tree tree;
        tree.root_node = nodes_.front().get();
        tree.nodes = std::move(nodes_);
        return tree;
    }

private:
    const BT::BehaviorTreeFactory& factory_;
    BT::Blackboard::Ptr blackboard_;
    std::vector<BT::TreeNode::Ptr> nodes_;
};

bool wantsBridge(const BT::Tree& tree)
{
    bool reads = false;
    for (const auto& node : tree.nodes) {
        if (node->registrationName() == "CheckPathSegment")
            return false;
        for (const auto& [port, text] : node->initializationParameters())
            reads = reads || text == "${navigation_bridge}";
    }
    return reads;
}

}  // namespace

BT::Tree goalTree(const BT::BehaviorTreeFactory& factory, const BT::Blackboard::Ptr& blackboard,
                  const std::string& tree, PointMm goal)
{
    Planter plant(factory, blackboard);
    BT::TreeNode& root = plant.sequence(nullptr);
    // Ten frames: the laser sees the room in every fifth.
    plant.add(&root, "Delay", {{"ticks", "10"}});
    const std::string target = fmt::format("{:.0f};{:.0f}", goal.x, goal.y);
    plant.addOr(root, "AwesomeSearch",
                {{"output_point", "navi_target_point"},
                 {"search_mode", "Target"},
                 {"target", target},
                 {"failure_tolerance", "0"}},
                fmt::format("--goal: no way to {} mm on what the robot knows of the floor", target));
    if (wantsBridge(factory.createTree(tree, blackboard))) {
        BT::TreeNode& onwards =
            plant.add(&plant.add(&root, "ForceSuccess"), "RetryUntilSuccesful", {{"num_attempts", "1000"}});
        BT::TreeNode& next = plant.sequence(&onwards);
        plant.add(&next, "CheckPathSegment", {{"input_navi_path", "${navigation_path_segments}"}});
        plant.add(&plant.add(&next, "Inverter"), "PathSegIsVector");
        plant.addOr(root, "BlackboardContains", {{"key", "navigation_bridge"}},
                    fmt::format("--goal: no bridge on the way to {} mm", target));
    }
    plant.add(&root, "SubtreeCondition", {{"subtree_file_path", tree}, {"expand_in_logger", "false"}});
    return plant.take();
}

}  // namespace vemra::robot
