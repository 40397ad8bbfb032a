#include "robot/services/wall_following/wall_following.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>

#include "robot/planning/lines.h"
#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/maps/grid_maps.h"
#include "robot/services/wall_following/wall_following_step.h"

namespace vemra::robot {
namespace {

// The rectangle that a follow is kept in: enough to get past a chair.
constexpr double kLimitMm = 600;
constexpr double kNaviLimitMm = 1000;
// Where the planned path leads, seen a little ahead.
constexpr double kPathAheadMm = 500;
constexpr double kNearObstacleMm = 600;
constexpr std::uint64_t kFreshFrames = 150;

// So often at about the same place within so long is too often.
constexpr std::size_t kTooOften = 6;
constexpr double kSamePlaceMm = 300;
constexpr std::uint64_t kRememberedFrames = 6000;

Degrees headingOf(PointMm from, PointMm to)
{
    return degreesOfRadians(std::atan2(to.y - from.y, to.x - from.x));
}

}  // namespace

Side WallFollowing::side() const
{
    bool right = true;
    parts_.blackboard.get("follow_wall_dir", right);
    return right ? Side::Right : Side::Left;
}

void WallFollowing::setSide(Side side)
{
    parts_.blackboard.set("follow_wall_dir", side == Side::Right ? "true" : "false");
}

FollowManner WallFollowing::manner(Side side) const
{
    constexpr double kSlow = 100;
    constexpr double kPreciseGap = 8;
    FollowManner manner;
    manner.wall = side;
    if (command_.low_speed) {
        manner.forward_mm_s = kSlow;
    }
    if (command_.precise) {
        manner.gap_mm = kPreciseGap;
    }
    return manner;
}

// The last contact if it is fresh, else the nearest thing.
std::optional<Degrees> WallFollowing::headingToObstacle() const
{
    const PoseMm pose = view_.map.pose();
    const RobotMap& map = view_.map;
    if (map.lastContactFrame() != 0 && parts_.state.frame - map.lastContactFrame() < kFreshFrames &&
        distance(map.lastContact(), pose.at) < kNearObstacleMm) {
        return headingOf(pose.at, map.lastContact());
    }
    const std::vector<PointMm> near = obstaclesAround(map, view_.switches, kNearObstacleMm);
    if (near.empty()) {
        return std::nullopt;
    }
    return headingOf(pose.at, *std::min_element(near.begin(), near.end(), [&](PointMm a, PointMm b) {
                         return distance(a, pose.at) < distance(b, pose.at);
                     }));
}

std::optional<Degrees> WallFollowing::headingOfPlan() const
{
    const PlanPtr& plan = search_.lastPlan();
    if (!plan || plan->segments.empty()) {
        return std::nullopt;
    }
    const Line& line = *plan->segments.front().line;
    const PointMm at = view_.map.pose().at;
    const PlaceOnLine here = nearestOnLine(line, at, 0, lengthOf(line));
    const PointMm ahead = pointAlong(line, here.along_mm + kPathAheadMm);
    if (distance(ahead, at) < 1) {
        return std::nullopt;
    }
    return headingOf(at, ahead);
}

void WallFollowing::setSideByContact(std::string_view bump_dir)
{
    if (bump_dir.starts_with("left")) {
        setSide(Side::Left);
    } else if (bump_dir.starts_with("right")) {
        setSide(Side::Right);
    } else {
        // Ahead: the side to which the thing lies more.
        const auto obstacle = headingToObstacle();
        const double off = obstacle ? wrapped({obstacle->value - view_.map.pose().yaw.value}).value : 0;
        setSide(off > 0 ? Side::Left : Side::Right);
    }
}

bool WallFollowing::collidesAgainAndAgain()
{
    if (parts_.blackboard.erase("reset_collision_times")) {
        collisions_.clear();
    }
    const std::uint64_t now = parts_.state.frame;
    const PointMm at = view_.map.pose().at;
    while (!collisions_.empty() && now - collisions_.front().frame > kRememberedFrames) {
        collisions_.pop_front();
    }
    collisions_.push_back({at, now});
    const auto here = std::count_if(collisions_.begin(), collisions_.end(), [at](const Collision& collision) {
        return distance(collision.at, at) <= kSamePlaceMm;
    });
    if (static_cast<std::size_t>(here) < kTooOften) {
        return false;
    }
    collisions_.clear();
    return true;
}

void WallFollowing::install(leaf::LeafHost& host)
{
    host.action("SetFollowWallCmd", [this](BT::TreeNode& node) {
        command_ = {node.getParam<bool>("ignorebase").value_or(false),
                    node.getParam<bool>("lowspeed").value_or(false),
                    node.getParam<bool>("precise").value_or(false)};
        return BT::NodeStatus::SUCCESS;
    });
    host.builder("SensorConsole", [this](const std::string& name, const BT::NodeParameters& ports) {
        return std::make_unique<FollowStepAction>(name, ports, parts_.body, view_,
                                                  [this](const BT::TreeNode&) { return manner(side()); });
    });
    // The side is told by number, 1 for the left; without one the wall is on the right, where the side brush
    // is.
    host.builder("FollowWallModeDeal", [this](const std::string& name, const BT::NodeParameters& ports) {
        return std::make_unique<FollowStepAction>(
            name, ports, parts_.body, view_, [this](const BT::TreeNode& node) {
                constexpr int kLeft = 1;
                const bool left = node.getParam<int>("FollowWallCmd").value_or(0) == kLeft;
                return manner(left ? Side::Left : Side::Right);
            });
    });
    host.builder("FollowWallNotLooped", [this](const std::string& name, const BT::NodeParameters& ports) {
        return std::make_unique<NotLoopedCondition>(name, ports, view_.map, parts_.state);
    });
    host.condition("CheckSuccessiveCollision",
                   [this](BT::TreeNode&) { return passed(!collidesAgainAndAgain()); });
    installSides(host);
    installLimits(host);
}

void WallFollowing::installSides(leaf::LeafHost& host)
{
    host.action("CalculateNavigateDirection", [this](BT::TreeNode&) {
        navigate_direction_ = headingOfPlan();
        return passed(navigate_direction_.has_value());
    });
    host.action("NavigatedSetFollowWallDirection", [this](BT::TreeNode&) {
        const auto obstacle = headingToObstacle();
        if (!obstacle || !navigate_direction_) {
            return BT::NodeStatus::FAILURE;
        }
        setSide(sideFor(*obstacle, *navigate_direction_));
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("CheckFollowWallMatchingNavi", [this](BT::TreeNode&) {
        const auto wanted = headingOfPlan();
        return passed(!wanted || wallIsInTheWay(side(), view_.map.pose().yaw, *wanted));
    });
    host.action("AdvancedSetFollowWallDirection", [this](BT::TreeNode& node) {
        std::string forced;
        if (node.blackboard()->get("advanced_follow_wall_force_dir", forced) && !forced.empty()) {
            setSide(forced == "false" || forced == "0" ? Side::Left : Side::Right);
            return BT::NodeStatus::SUCCESS;
        }
        std::string bump_dir;
        node.blackboard()->get("bump_dir", bump_dir);
        setSideByContact(bump_dir);
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SetFollowWallDirection", [this](BT::TreeNode& node) {
        const std::string bump_dir = textOf(node, "bump_dir");
        const std::string prefer = textOf(node, "prefer_direction");
        if (bump_dir.starts_with("middle") && !prefer.empty()) {
            setSide(prefer == "Left" ? Side::Left : Side::Right);
        } else {
            setSideByContact(bump_dir);
        }
        return BT::NodeStatus::SUCCESS;
    });
}

void WallFollowing::installLimits(leaf::LeafHost& host)
{
    const auto limitTo = [this](const char* key, double half_mm) {
        parts_.blackboard.set(key, squareAround(view_.map.pose().at, half_mm));
        return BT::NodeStatus::SUCCESS;
    };
    host.action("SetFollowWallRectLimit",
                [limitTo](BT::TreeNode&) { return limitTo("follow_wall_limit", kLimitMm); });
    host.action("SetNaviFollowWallRectLimit",
                [limitTo](BT::TreeNode&) { return limitTo("navi_follow_wall_limit", kNaviLimitMm); });
    // The walls may take half as long again as the floor has taken, and two minutes in any case.
    host.action("CalcFollowWallFrameOut", [](BT::TreeNode& node) {
        constexpr std::int64_t kLeastFrames = 6000;
        const std::string key = textOf(node, "out_key");
        if (key.empty()) {
            return BT::NodeStatus::FAILURE;
        }
        const auto so_far = node.getParam<std::int64_t>("auto_mode_frames").value_or(0);
        node.blackboard()->set(key, std::max(kLeastFrames, so_far / 2));
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("CheckFollowWallRectLimit", [this](BT::TreeNode& node) {
        const std::string key = textOf(node, "follow_wall_limit", "follow_wall_limit");
        // Given by its key or as itself.
        auto limit = boxOf(node, "follow_wall_limit");
        if (!limit) {
            limit = boxOf(parts_.blackboard, key);
        }
        return passed(limit && contains(*limit, view_.map.pose().at));
    });
}

}  // namespace vemra::robot
