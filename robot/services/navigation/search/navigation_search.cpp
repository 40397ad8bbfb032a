#include "robot/services/navigation/search/navigation_search.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <sstream>
#include <string_view>

#include "robot/planning/lines.h"
#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/maps/grid_maps.h"
#include "robot/services/navigation/goals/navigation_goals.h"

namespace vemra::robot {
namespace {

// How a mode treats a target. The goal is the target itself where the body fits there, else a place near it.
struct TargetRule
{
    std::string_view mode;
    bool unknown;    ///< over unknown floor
    double near_mm;  ///< how near to the target is near enough
};

constexpr double kNearTargetMm = 450;
constexpr double kNearCollisionMm = 700;

constexpr std::array<TargetRule, 6> kTargetRules = {{{"Target", true, kNearTargetMm},
                                                     {"TargetNoUnknown", false, kNearTargetMm},
                                                     {"TargetCollision", true, kNearCollisionMm},
                                                     {"TargetCollisionNoUnknown", false, kNearCollisionMm},
                                                     {"TargetGong", true, kNearTargetMm},
                                                     {"Origin", false, kNearTargetMm}}};

const TargetRule* targetRuleOf(std::string_view mode)
{
    const auto rule = std::find_if(kTargetRules.begin(), kTargetRules.end(),
                                   [mode](const TargetRule& known) { return known.mode == mode; });
    return rule == kTargetRules.end() ? nullptr : &*rule;
}

// A gap that is one cell too narrow by the map may still be wide enough.
constexpr int kTryFromRoom = 9;
constexpr double kCareful = 300;
constexpr double kLongFollow = 1500;

}  // namespace

struct NavigationSearch::Found
{
    GridPath path;
    std::vector<WayPiece> pieces;
};

NavigationSearch::NavigationSearch(const RobotParts& parts, const RobotMap& map,
                                   const SensorSwitches& switches, const BridgeBook& bridges)
    : parts_(parts), map_(map), switches_(switches), bridges_(bridges)
{
    setGoalRule("Normal", nearestUncovered);
    setGoalRule("SlamRetry", nearestUncovered);
    setGoalRule("Explore", [book = std::make_shared<FrontierBook>()](const SearchGround& ground) {
        return nearestFrontier(ground, *book);
    });
    setGoalRule("Charger", chargerOrFarthest);
}

std::optional<NavigationSearch::Found> NavigationSearch::find(const Request& request, const PlanningMap& plan,
                                                              bool over_bridges) const
{
    const TargetRule* rule = targetRuleOf(request.mode);
    WayRules rules;
    rules.unknown = rule == nullptr || rule->unknown;
    rules.came_by = [this](CellIndex cell) { return map_.track().passed(cell); };
    if (request.region) {
        rules.region = cellsOf(*request.region);
    }
    if (over_bridges) {
        rules.narrow = [&](CellIndex cell) {
            return (plan.room.at(cell) >= kTryFromRoom || map_.track().passed(cell)) &&
                   bridges_.failuresAt(centreOf(cell)) <= request.tolerance;
        };
    }
    const CostGrid costs = costsFor(plan, request.from, rules);
    std::optional<GridPath> path;
    if (rule != nullptr) {
        if (!request.target) {
            return std::nullopt;
        }
        path = findWay(plan, costs, request.from, *request.target, rule->near_mm);
    } else if (const auto pick = rules_.find(request.mode); pick != rules_.end()) {
        path = pick->second({map_, plan, costs, request.from, request.region, parts_.blackboard});
    }
    if (!path) {
        return std::nullopt;
    }
    std::vector<WayPiece> pieces = piecesOf(plan, costs, *path);
    return Found{std::move(*path), std::move(pieces)};
}

BridgePtr NavigationSearch::bridgeOf(const WayPiece& piece) const
{
    auto bridge = std::make_shared<Bridge>();
    bridge->line = piece.corners;
    if (bridge->line.size() < 2) {
        bridge->line.push_back(bridge->line.front());
    }
    const Track& track = map_.track();
    const auto all = [&](const auto& holds) {
        return std::all_of(piece.cells.begin(), piece.cells.end(), holds);
    };
    bridge->type = piece.kind == Stretch::OutOfVirtualWall              ? BridgeType::Tmp
                   : all([&](CellIndex c) { return track.passed(c); })  ? BridgeType::History
                   : all([&](CellIndex c) { return track.covered(c); }) ? BridgeType::TrialWithTrace
                                                                        : BridgeType::TrialNoTrace;
    bridge->failures = bridges_.failuresOf(bridge->from(), bridge->to());
    bridge->follow_wall_mm = bridge->type == BridgeType::TrialNoTrace ? kCareful : kLongFollow;
    return bridge;
}

std::vector<PlanSegment> NavigationSearch::segmentsOf(const std::vector<WayPiece>& pieces,
                                                      const Request& request, PointMm goal) const
{
    std::vector<PlanSegment> segments;
    for (const WayPiece& piece : pieces) {
        const bool last = &piece == &pieces.back();
        if (piece.kind != Stretch::Plain) {
            const BridgePtr bridge = bridgeOf(piece);
            segments.push_back({std::make_shared<const Line>(bridge->line), bridge});
            continue;
        }
        Line line = piece.corners;
        if (segments.empty() && request.from == cellAt(map_.pose().at)) {
            line.front() = map_.pose().at;
        }
        if (last) {
            line.back() = goal;
        }
        if (line.size() == 1) {
            // A way of one cell: a short run to its end.
            line.insert(line.begin(), segments.empty() ? map_.pose().at : segments.back().line->back());
        }
        segments.push_back({std::make_shared<const Line>(std::move(line)), nullptr});
    }
    return segments;
}

NavigationSearch::Request NavigationSearch::requestOf(const BT::TreeNode& node) const
{
    Request request;
    request.mode = textOf(node, "search_mode");
    request.from = cellAt(pointOf(node, "source_point").value_or(map_.pose().at));
    request.target = pointOf(node, "target");
    request.region = boxOf(node, "region");
    request.tolerance = node.getParam<int>("failure_tolerance").value_or(0);
    return request;
}

// A goal beyond what was seen so far has no way: who waits for the robot there learns why.
void NavigationSearch::tellIfOutside(PointMm target)
{
    if (map_.occupancy().window().contains(cellAt(target)) || told_outside_ == target) {
        return;
    }
    told_outside_ = target;
    std::ostringstream at;
    at << target;
    parts_.report(
        event::Note{"no way to " + at.str() + ": the goal lies beyond the map seen so far",
                    "search",
                    {{"goal_mm", std::vector<std::int64_t>{std::lround(target.x), std::lround(target.y)}}}});
}

std::optional<NavigationSearch::Found> NavigationSearch::answer(const Request& request)
{
    // What picks its goal itself goes by more than the map.
    const bool for_target = targetRuleOf(request.mode) != nullptr;
    Question question{request,
                      map_.version(),
                      bridges_.version(),
                      switches_.isOn("VirtualWall"),
                      switches_.isOn("PolygonVirtualWall"),
                      switches_.isOn("SegmentVirtualWallMap"),
                      barrier_.which ? barrier_.which() : 0};
    if (for_target && failed_ == question) {
        return std::nullopt;
    }
    PlanningMap plan = planningMapOf(map_, switches_);
    if (barrier_.mark) {
        barrier_.mark(plan);
    }
    std::optional<Found> found = find(request, plan, false);
    if (!found) {
        found = find(request, plan, true);
    }
    if (for_target && !found) {
        if (request.target) {
            tellIfOutside(*request.target);
        }
        failed_ = std::move(question);
    }
    return found;
}

BT::NodeStatus NavigationSearch::search(BT::TreeNode& node)
{
    BT::Blackboard& keys = parts_.blackboard;
    Request request = requestOf(node);
    const std::string output = textOf(node, "output_point");
    keys.set("awesome_search_mode", request.mode);
    if (request.region) {
        keys.set("awesome_search_region", *request.region);
    }
    // A wall that is followed towards a goal wants that goal, whatever the search before looked for.
    if (node.getParam<bool>("target_mode").value_or(false) && request.target) {
        const std::string before = request.mode;
        if (!keys.get("navi_followwall_mode", request.mode) || targetRuleOf(request.mode) == nullptr) {
            request.mode = targetRuleOf(before) != nullptr ? before : "Target";
        }
    }
    const std::optional<Found> found = answer(request);
    if (!found || output.empty()) {
        return BT::NodeStatus::FAILURE;
    }
    // A goal on which the body fits is taken as it was given, else the middle of the cell that was found.
    const CellIndex end = found->path.cells.back();
    const PointMm goal = request.target && cellAt(*request.target) == end ? *request.target : centreOf(end);

    auto result = std::make_shared<NavigationPlan>();
    result->segments = segmentsOf(found->pieces, request, goal);
    int worst = 0;
    for (const PlanSegment& segment : result->segments) {
        worst = std::max(worst, segment.bridge ? segment.bridge->failures : 0);
    }
    keys.set("navigation_path_segments", result);
    keys.set("path_bridge_max_failure_cnt", worst);
    keys.set("path_length_grid", found->path.cells.size());
    if (request.mode == "TargetGong") {
        keys.set("gong_navi_token", "");
    }
    keys.set(output, goal);
    last_plan_ = std::move(result);
    return BT::NodeStatus::SUCCESS;
}

BT::NodeStatus NavigationSearch::takeUpNext(BT::TreeNode& node)
{
    BT::Any given;
    const PlanPtr plan = node.getParam<PlanPtr>("input_navi_path").value_or(nullptr);
    if (!plan || plan->next >= plan->segments.size()) {
        return BT::NodeStatus::FAILURE;
    }
    if (node.getParam("input_navi_path", given) && given.isText()) {
        // Written as text: from now on a plan, which knows how far it was taken up.
        parts_.blackboard.set("navigation_path_segments", plan);
    }
    const PlanSegment& segment = plan->segments[plan->next++];
    const PlanSegment* next = plan->next < plan->segments.size() ? &plan->segments[plan->next] : nullptr;
    BT::Blackboard& keys = parts_.blackboard;
    keys.set("navigation_path", segment.line);
    keys.set("navi_path_target", segment.line->back());
    keys.set("trial_bridge_next_to_this_vector",
             next != nullptr && next->bridge && isTrial(next->bridge->type) ? "true" : "false");
    vector_in_hand_ = segment.bridge == nullptr;
    if (segment.bridge) {
        keys.set("navigation_bridge", segment.bridge);
    } else {
        keys.erase("navigation_bridge");
    }
    return BT::NodeStatus::SUCCESS;
}

void NavigationSearch::install(leaf::LeafHost& host)
{
    host.action("AwesomeSearch", [this](BT::TreeNode& node) { return search(node); });
    installPlan(host);
    installLooks(host);
}

void NavigationSearch::installPlan(leaf::LeafHost& host)
{
    host.action("CheckPathSegment", [this](BT::TreeNode& node) { return takeUpNext(node); });
    host.condition("PathSegIsVector", [this](BT::TreeNode&) { return passed(vector_in_hand_); });
    host.condition("PathSegHasTrialBridge", [](BT::TreeNode& node) {
        const PlanPtr plan = node.getParam<PlanPtr>("input_navi_path").value_or(nullptr);
        return passed(plan &&
                      std::any_of(plan->segments.begin(), plan->segments.end(), [](const auto& segment) {
                          return segment.bridge && isTrial(segment.bridge->type);
                      }));
    });
}

void NavigationSearch::installLooks(leaf::LeafHost& host)
{
    host.condition("IsPathClear", [this](BT::TreeNode& node) {
        const auto from = pointOf(node, "from_point");
        const auto to = pointOf(node, "to_point");
        if (!from || !to) {
            return BT::NodeStatus::FAILURE;
        }
        const bool unknown_counts = node.getParam<bool>("is_explore").value_or(false);
        auto plan =
            node.getParam<std::shared_ptr<const PlanningMap>>("obstacle_expanded_map").value_or(nullptr);
        if (!plan) {
            plan = std::make_shared<const PlanningMap>(planningMapOf(map_, switches_));
        }
        return passed(walkLine(cellAt(*from), cellAt(*to), [&](CellIndex cell) {
            const Ground ground = plan->at(cell);
            return ground == Ground::Open || (unknown_counts && ground == Ground::Unknown);
        }));
    });
    host.condition("AreaCheck", [this](BT::TreeNode& node) {
        const auto from = pointOf(node, "source_point");
        const auto threshold = node.getParam<int>("threshold");
        if (!from || !threshold || *threshold < 0) {
            return BT::NodeStatus::FAILURE;
        }
        const PlanningMap plan = planningMapOf(map_, switches_);
        const auto enough = static_cast<std::size_t>(*threshold);
        const CostGrid costs = costsFor(plan, cellAt(*from), {.unknown = false});
        return passed(countReachable(costs, cellAt(*from), enough) < enough);
    });
    host.action("MoveThroughWalls", [this](BT::TreeNode& node) { return moveThroughWalls(node); });
}

// Straight on from where the obstacle was hit: the first place behind it where the body fits.
BT::NodeStatus NavigationSearch::moveThroughWalls(BT::TreeNode& node) const
{
    constexpr double kStepMm = kCellMm / 2;
    constexpr int kSteps = 80;  // 2 m
    const auto pose = poseOf(node, "pose");
    const std::string key = textOf(node, "out_point");
    if (!pose || key.empty()) {
        return BT::NodeStatus::FAILURE;
    }
    const PlanningMap plan = planningMapOf(map_, switches_);
    bool through = false;
    for (int i = 0; i <= kSteps; ++i) {
        const PointMm there = pose->at + i * kStepMm * direction(pose->yaw);
        const Ground ground = plan.at(cellAt(there));
        through = through || ground == Ground::Solid;
        if (through && (ground == Ground::Open || ground == Ground::Unknown)) {
            node.blackboard()->set(key, there);
            return BT::NodeStatus::SUCCESS;
        }
    }
    return BT::NodeStatus::FAILURE;
}

}  // namespace vemra::robot
