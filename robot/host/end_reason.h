#pragma once

#include <string>

#include "behaviortree_cpp/tree_node.h"

namespace vemra::robot {

/// Finds out why a tree ends: keeps the leaf that was last to give each result.
class EndReason final : public BT::StatusObserver
{
public:
    void onStatusChange(const BT::TreeNode& node, BT::NodeStatus before, BT::NodeStatus now) override;

    /// "CheckPathSegment (GotoPoint, node 10): ${navigation_path_segments} is not on the blackboard"; empty
    /// where no leaf gave that result.
    [[nodiscard]] const std::string& of(BT::NodeStatus result) const
    {
        return result == BT::NodeStatus::SUCCESS ? success_ : failure_;
    }

private:
    std::string success_;
    std::string failure_;
};

}  // namespace vemra::robot
