#pragma once

#include <string>

#include "behaviortree_cpp/tree_node.h"

namespace vemra::robot {

/// Finds out why a tree ends: watches the nodes of a blackboard while it lives and keeps the leaf that was
/// last to give each result.
class EndReason final : public BT::StatusObserver
{
public:
    explicit EndReason(BT::Blackboard& blackboard) : blackboard_(blackboard)
    {
        blackboard_.setStatusObserver(this);
    }
    ~EndReason() override { blackboard_.setStatusObserver(nullptr); }
    EndReason(const EndReason&) = delete;
    EndReason& operator=(const EndReason&) = delete;

    void onStatusChange(const BT::TreeNode& node, BT::NodeStatus before, BT::NodeStatus now) override;

    /// "CheckPathSegment (GotoPoint, node 10): ${navigation_path_segments} is not on the blackboard"; empty
    /// where no leaf gave that result.
    [[nodiscard]] const std::string& of(BT::NodeStatus result) const
    {
        return result == BT::NodeStatus::SUCCESS ? success_ : failure_;
    }

private:
    BT::Blackboard& blackboard_;
    std::string success_;
    std::string failure_;
};

}  // namespace vemra::robot
