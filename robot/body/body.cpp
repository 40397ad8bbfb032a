#include "robot/body/body.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "robot/body/contact.h"

namespace vemra::robot {
namespace {

constexpr double kSubstepMm = 3;
constexpr std::uint64_t kLapseSteps = 1;
/// How far the bumper springs out before it lets go.
constexpr double kBumperTravelMm = 2;
/// Sine of the angle between way and wall from which on a contact presses it.
constexpr double kGrazing = 0.17;
/// The bumper goes around the front to a little behind the wheels.
constexpr double kBumperHalfDeg = 100;
/// Where the bumper's middle arc ends, and where the side arcs begin.
constexpr double kMiddleHalfDeg = 25;
constexpr double kSideFromDeg = 15;
constexpr double kCliffSensorRadiusMm = 155;
/// What a wheel without a hold on the floor still does by rubbing on the edge.
constexpr double kHangingGrip = 0.3;
constexpr int kNearRays = 5;  // to each side
constexpr double kNearStepDeg = 4;
constexpr double kNearReachMm = 150;
constexpr std::uint64_t kScanEverySteps = 5;
constexpr std::size_t kMostTouches = 8;

// How long a wheel takes from one speed to another.
double secondsTo(double now, double target, const BodyConfig& config)
{
    const bool slower = std::abs(target) < std::abs(now) || target * now < 0;
    return std::abs(target - now) / (slower ? config.braking : config.acceleration);
}

PointMm around(const PoseMm& pose, double bearing_deg, double radius_mm)
{
    return pose.at + radius_mm * direction({pose.yaw.value + bearing_deg});
}

}  // namespace

Body::Body(const World& world, const PoseMm& at, Chance chance, const BodyConfig& config)
    : world_(world),
      config_(config),
      odometry_chance_(chance.branch()),
      laser_chance_(chance.branch()),
      dock_chance_(chance.branch()),
      odometry_scale_(1 + 0.003 * odometry_chance_.gaussian()),
      pose_(at),
      odometry_(at)
{
    feelFloor();
    recordTrack(true);
}

void Body::driveArc(double forward_mm_s, double turn_deg_s, const void* driver)
{
    const double rim = radians({turn_deg_s}) * config_.track_mm / 2;
    drive({forward_mm_s - rim, forward_mm_s + rim}, driver);
}

void Body::step(double seconds)
{
    if (driver_ != nullptr && steps_ > ordered_in_ + kLapseSteps) {
        stop();
    }
    ++steps_;
    since_moved_s_ = lifted_ ? 0 : since_moved_s_ + seconds;
    turnWheels(seconds);

    const WheelSpeeds way{wheels_.left * seconds, wheels_.right * seconds};
    const double wheel_mm = (std::abs(way.left) + std::abs(way.right)) / 2;
    const auto on_floor = [this](double mm, bool hangs) {
        return mm * (1 - slip_) * (hangs ? kHangingGrip : 1.0);
    };
    const PointMm before = pose_.at;
    const double yaw_before = pose_.yaw.value;
    if (grip_mm_ > 0) {
        grip_mm_ = std::max(0.0, grip_mm_ - wheel_mm);
    } else if (!lifted_ && wheel_mm > 0) {
        const double left = on_floor(way.left, wheel_drop_.left);
        const double right = on_floor(way.right, wheel_drop_.right);
        moveOverFloor((left + right) / 2, degreesOfRadians((right - left) / config_.track_mm).value);
    }
    const PointMm moved = pose_.at - before;
    const double moved_mm = std::hypot(moved.x, moved.y);
    const double turned = pose_.yaw.value - yaw_before;
    const PointMm ahead = direction({yaw_before + turned / 2});
    flow_speed_ = (moved.x * ahead.x + moved.y * ahead.y) / seconds;
    turn_rate_ = turned / seconds + gyro_drift_;
    run_mm_ += moved_mm;
    jam_mm_ = std::max(0.0, jam_mm_ - moved_mm);
    tilt_mm_ = std::max(0.0, tilt_mm_ - wheel_mm);
    if (tilt_mm_ == 0) {
        tilt_deg_ = 0;
    }

    // Dead reckoning: the wheels give the way, the gyro the turn.
    const double way_mm = (way.left + way.right) / 2 * odometry_scale_ *
                          (1 + config_.odometry_noise * odometry_chance_.gaussian());
    const double gyro =
        turned * (1 + config_.gyro_noise * odometry_chance_.gaussian()) + gyro_drift_ * seconds;
    odometry_.at = odometry_.at + way_mm * direction({odometry_.yaw.value + gyro / 2});
    odometry_.yaw.value += gyro;

    feelContacts();
    feelFloor();
    hearDock();
    recordTrack(false);
}

void Body::hearDock()
{
    if (const auto& field = world_.dockField()) {
        dock_hearing_ = hear(*field, world_.visible(), pose_, dock_chance_);
        near_dock_ = field->isNear(pose_.at, world_.visible());
    }
}

void Body::turnWheels(double seconds)
{
    // Both get there at the same time, so that an arc is one from its start.
    const double needed = std::max(secondsTo(wheels_.left, commanded_.left, config_),
                                   secondsTo(wheels_.right, commanded_.right, config_));
    if (needed <= seconds) {
        wheels_ = commanded_;
        return;
    }
    const double share = seconds / needed;
    wheels_.left += share * (commanded_.left - wheels_.left);
    wheels_.right += share * (commanded_.right - wheels_.right);
}

void Body::moveOverFloor(double forward_mm, double turn_deg)
{
    const int parts = std::max(1, static_cast<int>(std::ceil(std::abs(forward_mm) / kSubstepMm)));
    for (int part = 0; part < parts; ++part) {
        const double half_turn = turn_deg / parts / 2;
        pose_.yaw.value += half_turn;
        const Move move =
            slide(world_.solid(), pose_.at, forward_mm / parts * direction(pose_.yaw), kRobotRadiusMm);
        pose_.yaw.value += half_turn;
        pose_.at = move.to;
        for (int i = 0; i < move.count; ++i) {
            const PointMm against = move.against[static_cast<std::size_t>(i)];
            const PointMm ahead = direction(pose_.yaw);
            // What the casing grazes does not overcome the bumper's springs.
            if (std::abs(against.x * ahead.x + against.y * ahead.y) >= kGrazing) {
                touch(against);
            }
        }
    }
}

void Body::touch(PointMm direction)
{
    const PointMm at = pose_.at + kRobotRadiusMm * direction;
    const auto thing = nearestObstruction(world_.solid(), at, kSubstepMm);
    if (!thing) {
        return;
    }
    // A corner may lie on the line between cells: a place a little further on would be beside the thing.
    const Touch touch{at, world_.solid().centreOf(thing->cell)};
    const bool known = std::any_of(touches_.begin(), touches_.end(), [&touch](const Touch& other) {
        return distance(other.at, touch.at) < kBumperTravelMm;
    });
    if (!known && touches_.size() < kMostTouches) {
        touches_.push_back(touch);
    }
}

void Body::feelContacts()
{
    std::erase_if(touches_, [this](const Touch& touch) {
        return distance(touch.at, pose_.at) > kRobotRadiusMm + kBumperTravelMm ||
               world_.solid().at(touch.behind) == CellState::Free;
    });
    bumper_ = jam_mm_ > 0 ? jammed_ : Sides{};
    rear_contact_ = false;
    for (const Touch& touch : touches_) {
        const PointMm offset = touch.at - pose_.at;
        const double bearing =
            wrapped({degreesOfRadians(std::atan2(offset.y, offset.x)).value - pose_.yaw.value}).value;
        if (std::abs(bearing) > kBumperHalfDeg) {
            rear_contact_ = true;
            continue;
        }
        bumper_.middle |= std::abs(bearing) <= kMiddleHalfDeg;
        bumper_.left |= bearing >= kSideFromDeg;
        bumper_.right |= bearing <= -kSideFromDeg;
    }
}

void Body::feelFloor()
{
    step_ahead_ = {};
    if (lifted_) {
        cliffs_ = {true, true, true};
        wheel_drop_ = {true, true};
        return;
    }
    if (world_.hasSteps()) {
        const auto on_step = [this](double bearing_deg) {
            return world_.isStep(around(pose_, bearing_deg, kRobotRadiusMm));
        };
        step_ahead_ = {on_step(60) || on_step(40), on_step(20) || on_step(0) || on_step(-20),
                       on_step(-40) || on_step(-60)};
    }
    const auto over_edge = [this](double bearing_deg, double radius_mm) {
        return world_.isCliff(around(pose_, bearing_deg, radius_mm));
    };
    if (world_.cliffs().empty()) {
        cliffs_ = {};
        wheel_drop_ = {};
        return;
    }
    cliffs_ = {over_edge(60, kCliffSensorRadiusMm),
               over_edge(20, kCliffSensorRadiusMm) || over_edge(-20, kCliffSensorRadiusMm),
               over_edge(-60, kCliffSensorRadiusMm)};
    wheel_drop_ = {over_edge(90, config_.track_mm / 2), over_edge(-90, config_.track_mm / 2)};
}

const LaserScan& Body::scan()
{
    recent_scan_ = takeScan(world_.visible(), pose_, config_.laser, laser_chance_);
    recent_scan_.step = steps_;
    return recent_scan_;
}

const LaserScan& Body::recentScan()
{
    if (recent_scan_.ranges_mm.empty() || steps_ - recent_scan_.step >= kScanEverySteps) {
        return scan();
    }
    return recent_scan_;
}

std::optional<double> Body::nearAhead() const
{
    std::optional<double> nearest;
    for (int ray = -kNearRays; ray <= kNearRays; ++ray) {
        const double bearing = ray * kNearStepDeg;
        const auto range =
            world_.solid().castRay(pose_.at, {pose_.yaw.value + bearing}, kRobotRadiusMm + kNearReachMm);
        if (range && (!nearest || *range - kRobotRadiusMm < *nearest)) {
            nearest = *range - kRobotRadiusMm;
        }
    }
    return nearest;
}

void Body::lift()
{
    lifted_ = true;
    since_moved_s_ = 0;
    touches_.clear();
    feelContacts();
    feelFloor();
}

void Body::setDown(const PoseMm& at)
{
    lifted_ = false;
    putAt(at);
}

void Body::carryTo(const PoseMm& at)
{
    putAt(at);
}

void Body::putAt(const PoseMm& at)
{
    // The yaw goes on counting from where it was, by the shortest turn.
    const double turn = wrapped({at.yaw.value - pose_.yaw.value}).value;
    pose_ = {at.at, {pose_.yaw.value + turn}};
    since_moved_s_ = 0;
    wheels_ = {};
    grip_mm_ = 0;
    tilt_deg_ = 0;
    touches_.clear();
    recent_scan_ = {};
    feelContacts();
    feelFloor();
    hearDock();
    recordTrack(true);
}

void Body::tilt(double degrees, double wheel_mm)
{
    tilt_deg_ = degrees;
    tilt_mm_ = wheel_mm;
}

void Body::jamBumper(const Sides& sides, double way_mm)
{
    jammed_ = sides;
    jam_mm_ = way_mm;
    feelContacts();
}

void Body::recordTrack(bool carried)
{
    if (carried || distance(track_.back().pose.at, pose_.at) >= track_step_mm_ ||
        std::abs(track_.back().pose.yaw.value - pose_.yaw.value) >= track_step_deg_) {
        if (track_.size() >= kMostTrackPoints) {
            thinTrack();
        }
        track_.push_back({pose_, carried});
    }
}

// Every second point goes, and from now on half as many come. Where a stretch began, one still does.
void Body::thinTrack()
{
    std::size_t kept = 0;
    bool carried = false;
    for (std::size_t i = 0; i < track_.size(); ++i) {
        carried = carried || track_[i].carried_here;
        if (i % 2 == 0) {
            track_[kept++] = {track_[i].pose, std::exchange(carried, false)};
        }
    }
    if (carried) {
        track_[kept++] = {track_.back().pose, true};
    }
    track_.resize(kept);
    track_step_mm_ *= 2;
    track_step_deg_ *= 2;
}

}  // namespace vemra::robot
