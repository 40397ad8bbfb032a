#include "robot/services/wall_following/wall_following_step.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "robot/base/clock.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/maps/grid_maps.h"
#include "robot/world/dock.h"

namespace vemra::robot {
namespace {

constexpr double kSeeAroundMm = 700;
constexpr int kBackOffFrames = 12;
constexpr double kBackOffMmS = -80;
constexpr double kTurnAwayDeg = 25;
constexpr double kTurnAwayDegS = 70;
constexpr int kMostContactsInVain = 12;
constexpr double kGotOnMm = 60;
constexpr double kMostSpunDeg = 540;
// A wall so near is being followed; one that was left so long ago is lost. Half a turn round a corner takes
// three seconds.
constexpr double kAtWallMm = 100;
constexpr int kLostFrames = 200;

// A loop has this many points of the track at least (about 3 m), and ends this near to where it was.
constexpr std::size_t kLoopPoints = 60;
constexpr int kSamePlaceCells = 3;

// The wall stands beside the robot or was just left behind. What stands ahead, or is passed on the other
// side, is not the wall that it follows: taken for it, it is circled towards again and again.
bool isAtWall(const PoseMm& pose, std::span<const PointMm> obstacles, Side wall)
{
    constexpr double kFromDeg = 60;
    constexpr double kToDeg = 150;
    const double to_left = wall == Side::Left ? 1 : -1;
    return std::any_of(obstacles.begin(), obstacles.end(), [&](PointMm p) {
        if (distance(p, pose.at) >= kRobotRadiusMm + kAtWallMm) {
            return false;
        }
        const PointMm way = p - pose.at;
        const Degrees heading = degreesOfRadians(std::atan2(way.y, way.x));
        const double bearing = to_left * wrapped({heading.value - pose.yaw.value}).value;
        return bearing >= kFromDeg && bearing <= kToDeg;
    });
}

}  // namespace

bool FollowStepAction::begin()
{
    back_off_frames_ = 0;
    turn_away_deg_ = 0;
    contacts_in_vain_ = 0;
    frames_without_wall_ = kLostFrames;
    contact_at_ = view_.map.pose().at;
    spun_deg_ = 0;
    spun_at_ = contact_at_;
    return true;
}

BT::NodeStatus FollowStepAction::advance()
{
    const PoseMm pose = view_.map.pose();
    FollowManner manner = manner_(*this);
    const double away = manner.wall == Side::Left ? -1 : 1;
    const bool contact = body().bumper().any() || body().cliffs().any();
    // A bumper that stays pressed is no new contact before the robot has turned as well: with something
    // behind it, it cannot back off.
    if (contact && back_off_frames_ == 0 && turn_away_deg_ == 0) {
        contacts_in_vain_ = distance(pose.at, contact_at_) < kGotOnMm ? contacts_in_vain_ + 1 : 1;
        if (contacts_in_vain_ > kMostContactsInVain) {
            return BT::NodeStatus::FAILURE;
        }
        contact_at_ = pose.at;
        back_off_frames_ = kBackOffFrames;
        turn_away_deg_ = kTurnAwayDeg;
    }
    if (back_off_frames_ > 0) {
        --back_off_frames_;
        turned_from_deg_ = pose.yaw.value;
        driveArc(kBackOffMmS, 0);
        return BT::NodeStatus::RUNNING;
    }
    if (turn_away_deg_ > 0) {
        if (std::abs(pose.yaw.value - turned_from_deg_) < turn_away_deg_) {
            driveArc(0, away * kTurnAwayDegS);
            return BT::NodeStatus::RUNNING;
        }
        turn_away_deg_ = 0;
    }
    const std::vector<PointMm> obstacles = obstaclesAround(view_.map, view_.switches, kSeeAroundMm);
    frames_without_wall_ = isAtWall(pose, obstacles, manner.wall) ? 0 : frames_without_wall_ + 1;
    if (frames_without_wall_ >= kLostFrames) {
        manner.most_towards_deg_s = 0;
    }
    const Motion motion = alongWall(pose, obstacles, manner);
    if (distance(pose.at, spun_at_) >= kGotOnMm) {
        spun_deg_ = 0;
        spun_at_ = pose.at;
    }
    spun_deg_ += motion.forward == 0 ? std::abs(body().turnRate()) * kFrameMs / 1000.0 : 0;
    if (spun_deg_ >= kMostSpunDeg) {
        return BT::NodeStatus::FAILURE;
    }
    driveArc(motion.forward, motion.turn);
    return BT::NodeStatus::RUNNING;
}

bool NotLoopedCondition::closesNow(std::size_t from) const
{
    static_assert(kLoopPoints <= Track::kRecent);
    const Track& track = map_.track();
    if (track.size() < from + kLoopPoints) {
        return false;
    }
    const auto& points = track.points();
    const CellIndex here = points.back().cell;
    const auto begin =
        std::lower_bound(points.begin(), points.end(), from,
                         [](const Track::Point& point, std::size_t number) { return point.number < number; });
    const auto end = points.end() - static_cast<std::ptrdiff_t>(kLoopPoints);
    return std::any_of(begin, end, [here](const Track::Point& there) {
        return std::max(std::abs(there.cell.column - here.column), std::abs(there.cell.row - here.row)) <=
               kSamePlaceCells;
    });
}

BT::NodeStatus NotLoopedCondition::tick()
{
    const std::size_t size = map_.track().size();
    if (asked_in_ + 1 != state_.frame || size < begins_at_) {
        rounds_ = 0;
        begins_at_ = size;
        int start = 0;
        if (getParam("trace_start_index", start) && start >= 0) {
            begins_at_ = std::min(size, static_cast<std::size_t>(start));
        }
        looked_at_ = size;
    }
    asked_in_ = state_.frame;
    bool looped = false;
    if (size != looked_at_) {
        looked_at_ = size;
        looped = closesNow(begins_at_);
    }
    if (looped) {
        ++rounds_;
        begins_at_ = size;
    }
    if (const std::string key = textOf(*this, "out_loop_num"); !key.empty()) {
        blackboard()->set(key, rounds_);
    }
    return passed(!looped);
}

}  // namespace vemra::robot
