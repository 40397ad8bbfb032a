#include "robot/host/visit_counter.h"

#include <nlohmann/json.hpp>

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

std::string visitFileText(const VisitCounter& counter, const std::string& scenario, std::uint64_t frames)
{
    nlohmann::ordered_json trees = nlohmann::ordered_json::object();
    for (const auto& [name, rows] : counter.trees()) {
        // Nodes that the host put above the tree have no place in any.
        if (name.empty())
            continue;
        nlohmann::ordered_json& tree = trees[name] = nlohmann::ordered_json::array();
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const Visits& v = rows[i].visits;
            if (v.ticks > 0)
                tree.push_back({i, rows[i].id, v.ticks, v.success, v.failure, v.running, v.halts});
        }
    }
    const nlohmann::ordered_json file{{"scenario", scenario}, {"frames", frames}, {"trees", trees}};
    return file.dump() + "\n";
}

}  // namespace vemra::robot
