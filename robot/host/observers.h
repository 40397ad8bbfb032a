#pragma once

#include <vector>

#include "behaviortree_cpp/tree_node.h"

namespace vemra::robot {

/// A blackboard has one observer; this one tells others.
class Observers final : public BT::StatusObserver
{
public:
    void add(BT::StatusObserver& observer) { all_.push_back(&observer); }
    void remove(const BT::StatusObserver& observer) { std::erase(all_, &observer); }
    [[nodiscard]] bool empty() const { return all_.empty(); }

    void onStatusChange(const BT::TreeNode& node, BT::NodeStatus before, BT::NodeStatus now) override
    {
        for (BT::StatusObserver* observer : all_)
            observer->onStatusChange(node, before, now);
    }
    void onTick(const BT::TreeNode& node, BT::NodeStatus result) override
    {
        for (BT::StatusObserver* observer : all_)
            observer->onTick(node, result);
    }

private:
    std::vector<BT::StatusObserver*> all_;
};

}  // namespace vemra::robot
