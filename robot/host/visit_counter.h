#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "behaviortree_cpp/tree_node.h"

namespace vemra::robot {

/// How often a node was ticked, with which results, and how often it was halted while it ran.
struct Visits
{
    std::uint64_t ticks = 0;
    std::uint64_t success = 0;
    std::uint64_t failure = 0;
    std::uint64_t running = 0;
    std::uint64_t halts = 0;

    Visits& operator+=(const Visits& other)
    {
        ticks += other.ticks;
        success += other.success;
        failure += other.failure;
        running += other.running;
        halts += other.halts;
        return *this;
    }
};

/// Counts the visits of each node of a run by its place: the same node of a tree that is entered again, or
/// twice at once, is one.
class VisitCounter final : public BT::StatusObserver
{
public:
    struct Row
    {
        std::string id;  ///< empty for a node that was never ticked
        Visits visits;
    };

    void onTick(const BT::TreeNode& node, BT::NodeStatus result) override;
    void onStatusChange(const BT::TreeNode& node, BT::NodeStatus before, BT::NodeStatus now) override;

    /// By tree; in a tree by the index of the node, as far as the last one that was ticked.
    [[nodiscard]] const std::map<std::string, std::vector<Row>, std::less<>>& trees() const { return trees_; }

private:
    Row& rowOf(const BT::TreeNode& node);

    std::map<std::string, std::vector<Row>, std::less<>> trees_;
    // Nodes of one tree are ticked one after the other; the text of its name is theirs in common.
    const char* last_tree_ = nullptr;
    std::vector<Row>* last_rows_ = nullptr;
};

/// What a run visited, as a file keeps it: JSON with a row [index, type, ticks, success, failure, running,
/// halts] for each node that was ticked, by tree.
[[nodiscard]] std::string visitFileText(const VisitCounter& counter, const std::string& scenario,
                                        std::uint64_t frames);

}  // namespace vemra::robot
