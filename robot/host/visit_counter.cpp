#include "robot/host/visit_counter.h"

namespace vemra::robot {

VisitCounter::Row& VisitCounter::rowOf(const BT::TreeNode& node)
{
    const BT::TreePlace place = node.place();
    if (last_rows_ == nullptr || place.tree.data() != last_tree_) {
        auto found = trees_.find(place.tree);
        if (found == trees_.end())
            found = trees_.emplace(std::string(place.tree), std::vector<Row>()).first;
        last_tree_ = place.tree.data();
        last_rows_ = &found->second;
    }
    if (last_rows_->size() <= place.index)
        last_rows_->resize(place.index + 1);
    return (*last_rows_)[place.index];
}

void VisitCounter::onTick(const BT::TreeNode& node, BT::NodeStatus result)
{
    Row& row = rowOf(node);
    if (row.id.empty())
        row.id = node.registrationName();
    ++row.visits.ticks;
    if (result == BT::NodeStatus::SUCCESS)
        ++row.visits.success;
    else if (result == BT::NodeStatus::FAILURE)
        ++row.visits.failure;
    else
        ++row.visits.running;
}

void VisitCounter::onStatusChange(const BT::TreeNode& node, BT::NodeStatus before, BT::NodeStatus now)
{
    if (before == BT::NodeStatus::RUNNING && now == BT::NodeStatus::IDLE)
        ++rowOf(node).visits.halts;
}

}  // namespace vemra::robot
