#pragma once

#include <functional>
#include <map>
#include <string>

#include "robot/belief/robot_map.h"
#include "robot/belief/sensor_switches.h"
#include "robot/planning/planner.h"
#include "robot/services/blackboard/navigation_plan.h"
#include "robot/services/bridges/bridges.h"
#include "robot/services/core/service.h"

namespace vemra::robot {

/// What a search has before it when it picks a goal by itself.
struct SearchGround
{
    const RobotMap& known;
    const PlanningMap& plan;
    const CostGrid& costs;
    CellIndex from;
    std::optional<BoxMm> region;
    BT::Blackboard& keys;
};

/// Picks the goal of a search mode, with the way there; nothing when there is none.
using GoalRule = std::function<std::optional<GridPath>(const SearchGround&)>;

/// Leaves that search the map and hand the plan out piece by piece. `AwesomeSearch` leaves the plan in
/// `navigation_path_segments`, its mode and region in `awesome_search_mode` and `awesome_search_region`, the
/// way's length in cells in `path_length_grid`, the failures of its worst bridge in
/// `path_bridge_max_failure_cnt`. A plan has bridges only where there is no other way. A search for a target
/// that failed fails again without a look at the map until something has changed.
class NavigationSearch final : public Service
{
public:
    NavigationSearch(const RobotParts& parts, const RobotMap& map, const SensorSwitches& switches,
                     const BridgeBook& bridges);

    void install(leaf::LeafHost& host) override;

    /// Settles how a mode without a target picks its goal; a later rule takes the place of an earlier one.
    void setGoalRule(const std::string& mode, GoalRule rule) { rules_[mode] = std::move(rule); }

    /// What else a search is not to enter, marked on its planning map; `which` tells one barrier from
    /// another, 0 for none.
    struct Barrier
    {
        std::function<int()> which;
        std::function<void(PlanningMap&)> mark;
    };
    void setBarrier(Barrier barrier) { barrier_ = std::move(barrier); }

    /// The plan of the last search; empty before the first.
    [[nodiscard]] const PlanPtr& lastPlan() const { return last_plan_; }

private:
    struct Request
    {
        std::string mode;
        CellIndex from;
        std::optional<PointMm> target;
        std::optional<BoxMm> region;
        int tolerance = 0;
        bool operator==(const Request&) const = default;
    };
    /// All that a search for a target depends on.
    struct Question
    {
        Request request;
        MapVersion map;
        std::uint64_t bridges = 0;
        bool lines_count = false;
        bool areas_count = false;
        bool rooms_shut = false;
        int barrier = 0;
        bool operator==(const Question&) const = default;
    };
    struct Found;

    BT::NodeStatus search(BT::TreeNode& node);
    [[nodiscard]] Request requestOf(const BT::TreeNode& node) const;
    [[nodiscard]] std::optional<Found> answer(const Request& request);
    void tellIfOutside(PointMm target);
    [[nodiscard]] std::optional<Found> find(const Request& request, const PlanningMap& plan,
                                            bool over_bridges) const;
    [[nodiscard]] std::vector<PlanSegment> segmentsOf(const std::vector<WayPiece>& pieces,
                                                      const Request& request, PointMm goal) const;
    [[nodiscard]] BridgePtr bridgeOf(const WayPiece& piece) const;
    void installPlan(leaf::LeafHost& host);
    void installLooks(leaf::LeafHost& host);
    BT::NodeStatus takeUpNext(BT::TreeNode& node);
    BT::NodeStatus moveThroughWalls(BT::TreeNode& node) const;

    RobotParts parts_;
    const RobotMap& map_;
    const SensorSwitches& switches_;
    const BridgeBook& bridges_;
    std::map<std::string, GoalRule, std::less<>> rules_;
    Barrier barrier_;
    PlanPtr last_plan_;
    std::optional<Question> failed_;
    std::optional<PointMm> told_outside_;  ///< the goal beyond the map of which it was told last
    bool vector_in_hand_ = true;
};

}  // namespace vemra::robot
