#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "app/trees/tree_model.h"
#include "behaviortree_cpp/tree_node.h"

namespace vemra::app {

/// Prints what was ticked of a tree, or of a part of it, and with which result: whenever that is otherwise
/// than in the frame before, in the lines of the tree's outline, on top the lowest nodes that run.
class TreeWatch final : public BT::StatusObserver
{
public:
    /// top is the index of the node that is watched with all below it; 0 for the whole tree.
    TreeWatch(std::ostream& out, TreeModel tree, std::size_t top);

    void onStatusChange(const BT::TreeNode& /*node*/, BT::NodeStatus /*before*/,
                        BT::NodeStatus /*now*/) override
    {}
    void onTick(const BT::TreeNode& node, BT::NodeStatus result) override;

    /// To be called after each frame.
    void frame(std::uint64_t number);

private:
    void print(std::uint64_t number) const;

    std::ostream& out_;
    TreeModel tree_;
    std::size_t top_;
    std::size_t end_;                    ///< behind the last node below
    std::vector<BT::NodeStatus> now_;    ///< IDLE: not ticked in this frame
    std::vector<BT::NodeStatus> shown_;  ///< what was printed last
};

/// "TREE" or "TREE:LINE", the line as `vemra trees show` counts them.
struct WatchedPart
{
    std::string tree;
    std::size_t top = 0;
};

/// Throws UserError when the text is neither.
[[nodiscard]] WatchedPart watchedPartOf(const std::string& text);

}  // namespace vemra::app
