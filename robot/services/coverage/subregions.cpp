#include "robot/services/coverage/subregions.h"

#include <algorithm>

#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {
namespace {

constexpr double kHalfPartMm = 15'000;
constexpr double kHalfNeighbourMm = 900;
constexpr double kInPartMm = 100;
constexpr double kNearBorderMm = 250;
constexpr double kMarkMm = 300;
constexpr char kCurrent[] = "current_subregion";

// The place of the border that is nearest to a point within.
PointMm nearestBorder(const BoxMm& box, PointMm at)
{
    const PointMm places[] = {{box.low.x, at.y}, {box.high.x, at.y}, {at.x, box.low.y}, {at.x, box.high.y}};
    return *std::min_element(std::begin(places), std::end(places),
                             [&](PointMm a, PointMm b) { return distance(a, at) < distance(b, at); });
}

}  // namespace

void SubregionLeaves::sync()
{
    ground_.sync();
    if (resets_ != ground_.map().resets()) {
        resets_ = ground_.map().resets();
        parts_of_floor_.clear();
        marked_border_.clear();
    }
}

BoxMm SubregionLeaves::partOf(PointMm place)
{
    sync();
    for (const BoxMm& part : parts_of_floor_) {
        if (contains(part, place)) {
            return part;
        }
    }
    return parts_of_floor_.emplace_back(squareAround(centreOf(cellAt(place)), kHalfPartMm));
}

void SubregionLeaves::install(leaf::LeafHost& host)
{
    host.action("FixSubregions", [this](BT::TreeNode&) {
        sync();
        parts_of_floor_.clear();
        BT::Blackboard& keys = parts_.blackboard;
        keys.set("subregion_fixed", "");
        keys.set("subregion_offset_grid", CellIndex{0, 0});
        keys.set("subregion_offset_x_fix", 0);
        keys.set("subregion_offset_y_fix", 0);
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SetCurrentSubregion", [this](BT::TreeNode& node) {
        const auto source = pointOf(node, "source_point");
        const auto limit = boxOf(parts_.blackboard, "gridmap_limit");
        if (!source || (limit && !contains(*limit, *source))) {
            return BT::NodeStatus::FAILURE;
        }
        parts_.blackboard.set(kCurrent, partOf(*source));
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SetOriginalSubregion", [this](BT::TreeNode&) {
        parts_.blackboard.set(kCurrent, partOf(ground_.map().pose().at));
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SetNeighborCleaningSubregion", [this](BT::TreeNode&) {
        parts_.blackboard.set(kCurrent, squareAround(ground_.map().pose().at, kHalfNeighbourMm));
        return BT::NodeStatus::SUCCESS;
    });
    host.action("RefineCurrentSubregion", [this](BT::TreeNode&) {
        const auto part = boxOf(parts_.blackboard, kCurrent);
        const PlanningMap plan = ground_.plan();
        const auto runs = ground_.runsLeft(plan, part, std::nullopt);
        if (!part || runs.empty()) {
            return BT::NodeStatus::FAILURE;
        }
        BoxMm left{centreOf(runs.front().first), centreOf(runs.front().first)};
        for (const CleaningRun& run : runs) {
            for (const PointMm end : {centreOf(run.first), centreOf(run.last)}) {
                left.low = {std::min(left.low.x, end.x), std::min(left.low.y, end.y)};
                left.high = {std::max(left.high.x, end.x), std::max(left.high.y, end.y)};
            }
        }
        parts_.blackboard.set(kCurrent, left);
        return BT::NodeStatus::SUCCESS;
    });
    host.action("MarkVirtualBound", [this](BT::TreeNode& node) {
        sync();
        const PointMm at = ground_.map().pose().at;
        if (const auto part = boxOf(node, "subregion")) {
            const PointMm border = nearestBorder(*part, at);
            if (distance(border, at) <= kMarkMm) {
                marked_border_.push_back(border);
            }
        }
        return BT::NodeStatus::SUCCESS;
    });
    installTests(host);
}

void SubregionLeaves::installTests(leaf::LeafHost& host)
{
    const auto inPart = [this](std::optional<PointMm> place) {
        const auto part = boxOf(parts_.blackboard, kCurrent);
        const PointMm grown{kInPartMm, kInPartMm};
        return passed(part && contains({part->low - grown, part->high + grown},
                                       place.value_or(ground_.map().pose().at)));
    };
    host.condition("InCurrentSubregion",
                   [inPart](BT::TreeNode& node) { return inPart(pointOf(node, "judge_point")); });
    host.condition("TargetInCurrentSubregion", [this, inPart](BT::TreeNode&) {
        const auto target = pointOf(parts_.blackboard, "navi_target_point");
        return target ? inPart(target) : BT::NodeStatus::FAILURE;
    });
    host.condition("FarFromVirtualBound", [this](BT::TreeNode& node) {
        const auto part = boxOf(node, "subregion");
        const PointMm at = ground_.map().pose().at;
        return passed(part && contains(*part, at) && distance(nearestBorder(*part, at), at) > kNearBorderMm);
    });
    host.condition("OnMarkedVirtualBound", [this](BT::TreeNode&) {
        const PointMm at = ground_.map().pose().at;
        return passed(std::any_of(marked_border_.begin(), marked_border_.end(),
                                  [at](PointMm mark) { return distance(mark, at) <= kMarkMm; }));
    });
}

}  // namespace vemra::robot
