#pragma once

#include "behaviortree_cpp/bt_factory.h"

namespace BT {

class TreePool;

/// Enters the registered tree that `subtree_file_path` names ("Escape", "Escape.xml", "reuse/Escape",
/// "reuse/Escape.xml", "tidemark_pro/Escape.xml" are all `Escape`) on the same blackboard. Its result is
/// that tree's; a halt halts it. The tree is made, or taken from those that wait, when the node is first
/// ticked, and goes back when it ends or is halted: trees wait as long as
/// there are nodes on the blackboard that have entered them. No tree may enter itself by way of others.
/// `expand_in_logger` is for viewers; only "true" counts as true. FAILURE when no tree of that name is
/// registered or it has no nodes. What a builder throws comes out of the tick: a tree that cannot be built is
/// a fault of the program. So is a tree that enters itself, or trees nested deeper than kMaxLevels, a
/// BehaviorTreeException.
class SubtreeConditionNode : public LeafNode
{
public:
    SubtreeConditionNode(const std::string& name, const NodeParameters& parameters,
                         std::weak_ptr<TreeRegistry> trees);
    ~SubtreeConditionNode() override;

    static const NodeParameters& requiredNodeParameters();

    void halt() override;
    [[nodiscard]] NodeType type() const override { return NodeType::CONDITION; }
    /// The tree being run, or nullptr.
    [[nodiscard]] const Tree* entered() const { return entered_.get(); }
    [[nodiscard]] bool expandInLogger() const;
    /// Has a tree wait to be entered, and the trees that it enters; see prepareTrees().
    void prepare();

protected:
    NodeStatus tick() override;

private:
    /// False when no tree is named.
    bool findPool();
    /// A new tree, or nullptr when it has no nodes.
    [[nodiscard]] std::unique_ptr<Tree> makeTree();
    bool enter();
    void leave();

    std::weak_ptr<TreeRegistry> trees_;
    std::shared_ptr<TreePool> pool_;
    std::unique_ptr<Tree> entered_;
    bool in_tick_ = false;
};

}  // namespace BT
