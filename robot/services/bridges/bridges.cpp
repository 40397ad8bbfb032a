#include "robot/services/bridges/bridges.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "robot/planning/lines.h"
#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/maps/grid_maps.h"

namespace vemra::robot {
namespace {

constexpr double kSameEndMm = 150;
constexpr double kPassesByMm = 200;
constexpr double kAcrossMm = 120;
/// Ends that were learnt so near to the ones told are no better.
constexpr double kNoBetterMm = 100;

bool isSame(const StepCrossings::Ends& a, const StepCrossings::Ends& b)
{
    return distance(a.from, b.from) <= kSameEndMm && distance(a.to, b.to) <= kSameEndMm;
}

BridgePtr bridgeOf(const BT::TreeNode& node, const char* port = "bridge")
{
    return node.getParam<BridgePtr>(port).value_or(nullptr);
}

}  // namespace

std::optional<std::size_t> BridgeBook::find(PointMm from, PointMm to) const
{
    const auto same = [](PointMm a, PointMm b) { return distance(a, b) <= kSameEndMm; };
    const auto entry = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& known) {
        return (same(known.from, from) && same(known.to, to)) ||
               (same(known.from, to) && same(known.to, from));
    });
    if (entry == entries_.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(entry - entries_.begin());
}

void BridgeBook::record(const Bridge& bridge, bool crossed)
{
    std::optional<std::size_t> known = find(bridge.from(), bridge.to());
    if (!known) {
        known = entries_.size();
        entries_.push_back({bridge.from(), bridge.to(), 0});
    }
    int& failures = entries_[*known].failures;
    failures = crossed ? 0 : failures + 1;
    ++version_;
}

void BridgeBook::forgive()
{
    entries_.clear();
    ++version_;
}

int BridgeBook::failuresOf(PointMm from, PointMm to) const
{
    const std::optional<std::size_t> entry = find(from, to);
    return entry ? entries_[*entry].failures : 0;
}

int BridgeBook::failuresAt(PointMm place) const
{
    int most = 0;
    for (const Entry& entry : entries_) {
        const std::vector<PointMm> line{entry.from, entry.to};
        if (nearestOnLine(line, place, 0, lengthOf(line)).away_mm <= kPassesByMm) {
            most = std::max(most, entry.failures);
        }
    }
    return most;
}

void StepCrossings::learn(const Ends& bridge, const Ends& crossed)
{
    forget(bridge);
    learnt_.push_back({bridge, crossed});
}

std::optional<StepCrossings::Ends> StepCrossings::better(const Ends& bridge) const
{
    for (const Learnt& known : learnt_) {
        Ends ends = known.crossed;
        if (isSame(known.bridge, {bridge.to, bridge.from})) {
            std::swap(ends.from, ends.to);
        } else if (!isSame(known.bridge, bridge)) {
            continue;
        }
        if (distance(ends.from, bridge.from) > kNoBetterMm || distance(ends.to, bridge.to) > kNoBetterMm) {
            return ends;
        }
    }
    return std::nullopt;
}

void StepCrossings::forget(const Ends& bridge)
{
    std::erase_if(learnt_, [&](const Learnt& known) {
        return isSame(known.bridge, bridge) || isSame(known.bridge, {bridge.to, bridge.from});
    });
}

BridgePtr BridgeService::inHand() const
{
    if (crossing_) {
        return crossing_;
    }
    BridgePtr bridge;
    parts_.blackboard.get("navigation_bridge", bridge);
    return bridge;
}

bool BridgeService::stillFits(const Bridge& bridge) const
{
    const PlanningMap plan = planningMapOf(map_, switches_);
    for (std::size_t i = 0; i + 1 < bridge.line.size(); ++i) {
        if (!walkLine(cellAt(bridge.line[i]), cellAt(bridge.line[i + 1]),
                      [&](CellIndex cell) { return plan.at(cell) != Ground::Solid; })) {
            return false;
        }
    }
    return true;
}

// Out of a virtual wall the robot is across as soon as its body is out; else at the far end, or beyond it as
// seen from the near one.
bool BridgeService::crossed(const BT::TreeNode& node) const
{
    const BridgePtr bridge = inHand();
    const PointMm at = map_.pose().at;
    if (bridge && bridge->type == BridgeType::Tmp) {
        const VirtualWalls& walls = map_.virtualWalls();
        return walls.areaAt(at) == nullptr && !walls.nearestOfAreas(at, kRobotRadiusMm) &&
               !walls.nearestOfLines(at, kRobotRadiusMm);
    }
    const auto to = pointOf(node, "bridge_to_point");
    if (!to) {
        return false;
    }
    if (distance(*to, at) <= kAcrossMm) {
        return true;
    }
    return bridge && distance(at, bridge->from()) > distance(bridge->from(), *to) + kAcrossMm &&
           distance(at, *to) < distance(at, bridge->from());
}

void BridgeService::settle()
{
    if (const BridgePtr bridge = inHand()) {
        const bool crossed = parts_.blackboard.contains("cross_bridge_success");
        book_.record(*bridge, crossed);
        if (!crossed && bridge->type == BridgeType::Tmp) {
            parts_.blackboard.set("tmp_bridge_cross_failed", "");
        }
    }
    crossing_ = nullptr;
}

void BridgeService::install(leaf::LeafHost& host)
{
    host.action("BridgeDestructor", [this](BT::TreeNode& node) {
        const BridgePtr bridge = bridgeOf(node);
        crossing_ = bridge;
        const std::string from = textOf(node, "out_from_point");
        const std::string to = textOf(node, "out_to_point");
        const std::string follow = textOf(node, "out_follow_wall_dist");
        if (!bridge || from.empty() || to.empty() || follow.empty()) {
            return BT::NodeStatus::FAILURE;
        }
        node.blackboard()->set(from, bridge->from());
        node.blackboard()->set(to, bridge->to());
        node.blackboard()->set(follow, bridge->follow_wall_mm);
        return BT::NodeStatus::SUCCESS;
    });
    host.action("BridgeTypeReader", [](BT::TreeNode& node) {
        const BridgePtr bridge = bridgeOf(node);
        const std::string key = textOf(node, "out_bridge_type");
        if (!bridge || key.empty()) {
            return BT::NodeStatus::FAILURE;
        }
        node.blackboard()->set(key, toText(bridge->type));
        return BT::NodeStatus::SUCCESS;
    });
    host.action("BridgePathTrans", [](BT::TreeNode& node) {
        const BridgePtr bridge = bridgeOf(node);
        const std::string key = textOf(node, "o_path");
        if (!bridge || key.empty()) {
            return BT::NodeStatus::FAILURE;
        }
        node.blackboard()->set(key, std::make_shared<const Line>(bridge->line));
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("BridgeValid", [this](BT::TreeNode& node) {
        const BridgePtr bridge = bridgeOf(node);
        return passed(bridge && stillFits(*bridge));
    });
    installCrossing(host);
    installSteps(host);
}

void BridgeService::installSteps(leaf::LeafHost& host)
{
    host.condition("IsCrossingStep", [this](BT::TreeNode&) {
        const BridgePtr bridge = inHand();
        return passed(bridge && bridge->type == BridgeType::Step);
    });
    host.condition("NeedToModifyBridge", [this](BT::TreeNode& node) {
        const auto from = pointOf(node, "i_bridge_from_pt");
        const auto to = pointOf(node, "i_bridge_to_pt");
        const std::string new_from = textOf(node, "o_modified_from_pt");
        const std::string new_to = textOf(node, "o_modified_to_pt");
        if (!from || !to || new_from.empty() || new_to.empty()) {
            return BT::NodeStatus::FAILURE;
        }
        const auto ends = steps_.better({*from, *to});
        if (!ends) {
            return BT::NodeStatus::FAILURE;
        }
        node.blackboard()->set(new_from, ends->from);
        node.blackboard()->set(new_to, ends->to);
        return BT::NodeStatus::SUCCESS;
    });
    host.action("UpdateStepBridge", [this](BT::TreeNode& node) {
        const BridgePtr bridge = bridgeOf(node, "origin_bridge");
        const auto from = pointOf(node, "bridge_from");
        const auto to = pointOf(node, "bridge_to");
        if (bridge && from && to) {
            steps_.learn({bridge->from(), bridge->to()}, {*from, *to});
        }
        return BT::NodeStatus::SUCCESS;
    });
    host.action("InvalidStepBridge", [this](BT::TreeNode& node) {
        if (const BridgePtr bridge = bridgeOf(node, "i_bridge")) {
            book_.record(*bridge, false);
            steps_.forget({bridge->from(), bridge->to()});
        }
        return BT::NodeStatus::SUCCESS;
    });
}

void BridgeService::installCrossing(leaf::LeafHost& host)
{
    const auto succeed = [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; };
    host.condition("BridgeCrossed", [this](BT::TreeNode& node) {
        // Not on the first look: the robot may only be passing by.
        const int wanted = node.getParam<int>("ticks_threshold").value_or(0);
        frames_across_ = crossed(node) ? frames_across_ + 1 : 0;
        return passed(frames_across_ > wanted);
    });
    host.action("UpdateBridgeCost", [this](BT::TreeNode&) {
        settle();
        return BT::NodeStatus::SUCCESS;
    });
    host.action("ValidateAllBridges", [this](BT::TreeNode&) {
        book_.forgive();
        return BT::NodeStatus::SUCCESS;
    });
    host.action("ResetBridgeList", [this](BT::TreeNode&) {
        frames_across_ = 0;
        parts_.blackboard.erase("navigation_bridge");
        return BT::NodeStatus::SUCCESS;
    });
    host.action("CrossBridgeMonitor", succeed);
    host.action("CutdownBridges", succeed);
    host.action("StepBridgeCrossed", succeed);
    host.action("TmpProcSpecialBridge", succeed);
}

}  // namespace vemra::robot
