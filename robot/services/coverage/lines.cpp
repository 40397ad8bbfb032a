#include "robot/services/coverage/lines.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "robot/planning/planner.h"
#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/world/dock.h"

namespace vemra::robot {
namespace {

constexpr char kNextLine[] = "next_line_to_clean";
// What ends a line lies so near behind its last cell.
constexpr int kBehindCells = 6;
// A line to a thing that nobody traced is driven on until it touches.
constexpr double kTouchMm = 200;
constexpr double kHardlyCleanedM2 = 1;

}  // namespace

// Does the body, driven on along a row from the last open cell, touch first what nobody traced?
bool LineLeaves::touchesUntraced(CellIndex last, CellIndex step) const
{
    constexpr double kRadiusCells = kRobotRadiusMm / kCellMm;
    constexpr int kAside = static_cast<int>(kRadiusCells);
    double first = kTouchMm / kCellMm;
    bool untraced = false;
    for (int ahead = 1; ahead <= kBehindCells; ++ahead) {
        for (int aside = -kAside; aside <= kAside; ++aside) {
            const CellIndex cell{last.column + ahead * step.column - aside * step.row,
                                 last.row + ahead * step.row + aside * step.column};
            if (ground_.map().occupancy().at(cell) != CellState::Occupied) {
                continue;
            }
            const double after = ahead - std::sqrt(kRadiusCells * kRadiusCells - aside * aside);
            if (after < first) {
                first = after;
                untraced = ground_.isUntraced(cell, centreOf(last));
            }
        }
    }
    return untraced;
}

// A line goes over the whole of its last cell where there is room. Where an untraced thing ends it, the thing
// is to be touched: that is how islands are found.
PointMm LineLeaves::endOf(const PlanningMap& plan, CellIndex from, CellIndex end, bool touches) const
{
    const CellIndex step{(end.column > from.column) - (end.column < from.column),
                         (end.row > from.row) - (end.row < from.row)};
    const PointMm along{static_cast<double>(step.column), static_cast<double>(step.row)};
    const PointMm middle = centreOf(end);
    if (plan.at({end.column + step.column, end.row + step.row}) == Ground::Open) {
        return middle + (kCellMm / 2) * along;
    }
    return touches && from != end && touchesUntraced(end, step) ? middle + kTouchMm * along : middle;
}

BT::NodeStatus LineLeaves::planNext(const BT::TreeNode& node, std::optional<BoxMm> region)
{
    const auto source = pointOf(node, "source_point");
    if (!source) {
        return BT::NodeStatus::FAILURE;
    }
    // Where there is none, the trees are not to go back to the line before.
    parts_.blackboard.erase(kNextLine);
    const PlanningMap plan = ground_.plan();
    const auto runs = ground_.runsLeft(plan, region, node.getParam<bool>("is_rotate"));
    if (runs.empty()) {
        return BT::NodeStatus::FAILURE;
    }
    const CellIndex from = cellAt(*source);
    WayRules rules{.unknown = false};
    if (region) {
        rules.region = cellsOf(*region);
    }
    const auto run = nearestRun(runs, costsFor(plan, from, rules), from);
    if (!run || !ground_.offers().take("line", centreOf(run->middle()))) {
        return BT::NodeStatus::FAILURE;
    }
    parts_.blackboard.set(kNextLine, SegmentMm{endOf(plan, run->last, run->first, false),
                                               endOf(plan, run->first, run->last, true)});
    return BT::NodeStatus::SUCCESS;
}

// An arc of half the distance between the lines, onto the direction of the next one; left is positive.
BT::NodeStatus LineLeaves::planTurn(const BT::TreeNode& node)
{
    SegmentMm line;
    const std::string angle_key = textOf(node, "out_angle");
    const std::string radius_key = textOf(node, "out_radius");
    if (!parts_.blackboard.get(kNextLine, line) || angle_key.empty() || radius_key.empty() ||
        distance(line.from, line.to) < 1) {
        return BT::NodeStatus::FAILURE;
    }
    const PoseMm pose = ground_.map().pose();
    const PointMm along = line.to - line.from;
    const Degrees heading = degreesOfRadians(std::atan2(along.y, along.x));
    const PointMm ahead = direction(pose.yaw);
    const PointMm to = line.from - pose.at;
    const double aside = ahead.x * to.y - ahead.y * to.x;
    double angle = wrapped({heading.value - pose.yaw.value}).value;
    // The half turn goes to the side where the line is.
    if (std::abs(angle) > 90 && (angle > 0) != (aside > 0)) {
        angle += angle > 0 ? -360 : 360;
    }
    parts_.blackboard.set(angle_key, angle);
    parts_.blackboard.set(radius_key, std::abs(aside) / 2);
    return BT::NodeStatus::SUCCESS;
}

BT::NodeStatus LineLeaves::extendFinish(const BT::TreeNode&)
{
    const auto finish = pointOf(parts_.blackboard, "finish_point");
    const auto start = pointOf(parts_.blackboard, "navi_target_point");
    const auto part = boxOf(parts_.blackboard, "current_subregion");
    if (!finish || !start || distance(*finish, *start) < 1) {
        return BT::NodeStatus::FAILURE;
    }
    const PlanningMap plan = ground_.plan();
    const PointMm step = (kCellMm / distance(*finish, *start)) * (*finish - *start);
    PointMm end = *finish;
    while (plan.at(cellAt(end + step)) == Ground::Open && (!part || contains(*part, end + step))) {
        end = end + step;
    }
    parts_.blackboard.set("finish_point", end);
    return BT::NodeStatus::SUCCESS;
}

BT::NodeStatus LineLeaves::chooseDirection()
{
    const PlanningMap plan = ground_.plan();
    const auto region = boxOf(parts_.blackboard, "current_subregion");
    parts_.blackboard.set("gong_vertically", CoverageGround::longerAlongY(plan, windowOf(plan, region)));
    return BT::NodeStatus::SUCCESS;
}

BT::NodeStatus LineLeaves::nothingLeft(const char* region_key)
{
    const PlanningMap plan = ground_.plan();
    return passed(ground_.runsLeft(plan, boxOf(parts_.blackboard, region_key), std::nullopt).empty());
}

void LineLeaves::install(leaf::LeafHost& host)
{
    const auto inRegion = [this](BT::TreeNode& node) { return planNext(node, boxOf(node, "region")); };
    host.action("PlanNextLine", inRegion);
    host.action("PlanMultipleLine", inRegion);
    host.action("PlanNextLineForVslam", inRegion);
    host.action("FindNextLine", [this](BT::TreeNode& node) {
        return planNext(node, boxOf(parts_.blackboard, "current_subregion"));
    });
    host.action("CalcSwitchLineTurnParam", [this](BT::TreeNode& node) { return planTurn(node); });
    host.action("ExtendFinishPoint", [this](BT::TreeNode& node) { return extendFinish(node); });
    host.action("FixGongDir", [this](BT::TreeNode&) { return chooseDirection(); });
    host.condition("GongCompleteReconfirm", [this](BT::TreeNode&) { return nothingLeft("clean_region"); });
    host.condition("CleanAreaTooSmall", [this](BT::TreeNode&) {
        return passed(ground_.map().cleaned().areaM2() < kHardlyCleanedM2);
    });
}

}  // namespace vemra::robot
