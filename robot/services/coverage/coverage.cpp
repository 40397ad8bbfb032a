#include "robot/services/coverage/coverage.h"

#include <algorithm>
#include <cmath>

#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/coverage/run_search.h"
#include "robot/services/navigation/goals/navigation_goals.h"

namespace vemra::robot {
namespace {

// A place at the edge of the unknown is worth going to when so much lies behind it.
constexpr int kUnseenWithin = 6;
constexpr int kUnseenCells = 40;

bool inRegion(const SearchGround& ground, CellIndex cell)
{
    return !ground.region || contains(*ground.region, centreOf(cell));
}

}  // namespace

CoverageService::CoverageService(const RobotParts& parts, RobotMap& map, const MapStore& store,
                                 const SensorSwitches& switches, NavigationSearch& search)
    : parts_(parts),
      search_(search),
      ground_(map, switches),
      lines_(parts, ground_),
      subregions_(parts, ground_),
      chains_(parts, ground_),
      rooms_(parts, ground_, store)
{
    settleSearches();
}

void CoverageService::settleSearches()
{
    search_.setGoalRule("Normal", [this](const SearchGround& ground) { return nearestUnswept(ground); });
    search_.setGoalRule("SlamRetry", [this](const SearchGround& ground) { return nearestUnseen(ground); });
    search_.setGoalRule("Region", [this](const SearchGround& ground) { return intoRegion(ground); });
    search_.setGoalRule("Segment", [this](const SearchGround& ground) { return rooms_.nextPlace(ground); });
    search_.setGoalRule("SegmentRetry",
                        [this](const SearchGround& ground) { return rooms_.unreached(ground); });
    search_.setBarrier({[this] { return static_cast<int>(rooms_.roomThatIsKept()); },
                        [this](PlanningMap& plan) { rooms_.closeOthers(plan); }});
    search_.setGoalRule("Chain", [this](const SearchGround& ground) { return chains_.nearestEnd(ground); });
    search_.setGoalRule("Block", [this](const SearchGround& ground) { return chains_.nearestBlock(ground); });
}

void CoverageService::update()
{
    ground_.sync();
    rooms_.update();
    RobotMap& map = ground_.map();
    const bool sweeps = parts_.state.brushes_on && !parts_.body.wheelDrop().any();
    if (map.cleaned().follow(map.pose(), sweeps)) {
        ground_.offers().changed(map.pose().at);
    }
    charge_need_.follow(parts_.state.battery_percent, map.cleaned().areaM2());
}

bool CoverageService::take(const Happening& what)
{
    if (const auto* command = std::get_if<AppCommand>(&what)) {
        rooms_.setPasses(command->passes);
    }
    return false;
}

// The same floor and the same book as the planner of lines goes by: what is found here has a line.
std::optional<GridPath> CoverageService::nearestUnswept(const SearchGround& ground)
{
    // A line is taken when it is planned; over a trial bridge the trees go without planning one.
    return wayToNearestRun(ground, ground_.runsLeft(ground.plan, ground.region, std::nullopt),
                           ground_.offers(), [](const CleaningRun&) { return true; });
}

std::optional<GridPath> CoverageService::nearestUnseen(const SearchGround& ground)
{
    ground_.sync();
    auto way = findNearest(ground.costs, ground.from, [&](CellIndex cell) {
        if (!inRegion(ground, cell) || ground.plan.at(cell) != Ground::Open ||
            isOpenAround(ground.plan, cell)) {
            return false;
        }
        int unseen = 0;
        for (int row = -kUnseenWithin; row <= kUnseenWithin; ++row) {
            for (int column = -kUnseenWithin; column <= kUnseenWithin; ++column) {
                const CellIndex beside{cell.column + column, cell.row + row};
                unseen += ground.plan.at(beside) == Ground::Unknown ? 1 : 0;
            }
        }
        return unseen >= kUnseenCells && ground_.offers().isOpen("unseen", centreOf(cell));
    });
    if (!way || !takeWay(ground, *way, ground_.offers())) {
        return std::nullopt;
    }
    ground_.offers().take("unseen", centreOf(way->cells.back()));
    return way;
}

std::optional<GridPath> CoverageService::intoRegion(const SearchGround& ground)
{
    return findNearest(ground.costs, ground.from, [&](CellIndex cell) {
        return inRegion(ground, cell) && ground.plan.at(cell) == Ground::Open;
    });
}

int CoverageService::chargeForTheRest()
{
    const RobotMap& map = ground_.map();
    constexpr double kCellM2 = Home::kCellMm * Home::kCellMm / 1e6;
    const double known_m2 = static_cast<double>(map.occupancy().freeCells()) * kCellM2;
    return charge_need_.forFloor(std::max(0.0, known_m2 - map.cleaned().areaM2()));
}

void CoverageService::install(leaf::LeafHost& host)
{
    lines_.install(host);
    subregions_.install(host);
    chains_.install(host);
    rooms_.install(host);
    // The search for the unseen gives none but places that are worth it.
    host.condition("SlamRetryAreaCheck", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    host.action("BreakPointElecCalculate", [this](BT::TreeNode&) {
        parts_.blackboard.set("Elec_BreakPoint", chargeForTheRest());
        return BT::NodeStatus::SUCCESS;
    });
    host.action("FindNearestBoundary", [this](BT::TreeNode& node) {
        const auto source = pointOf(node, "source_point");
        const std::string key = textOf(node, "out_target_point");
        if (!source || key.empty()) {
            return BT::NodeStatus::FAILURE;
        }
        const PlanningMap plan = ground_.plan();
        const CellIndex from = cellAt(ground_.map().pose().at);
        constexpr double kStandWithinMm = 1000;
        const auto way =
            findWayCloseTo(costsFor(plan, from, {.unknown = false}), from, *source, kStandWithinMm);
        if (!way) {
            return BT::NodeStatus::FAILURE;
        }
        const CellIndex stand = way->cells.back();
        node.blackboard()->set(key, stand == cellAt(*source) ? *source : centreOf(stand));
        return BT::NodeStatus::SUCCESS;
    });
}

}  // namespace vemra::robot
