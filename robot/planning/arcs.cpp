#include "robot/planning/arcs.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "robot/world/dock.h"

namespace vemra::robot {
namespace {

// A drive: how far ahead an arc is looked at, and in how many places.
constexpr double kLookAheadS = 0.9;
constexpr int kLooks = 6;
constexpr std::array kTurns = {-1.0, -0.75, -0.55, -0.4, -0.27, -0.16, -0.08, 0.0,
                               0.08, 0.16,  0.27,  0.4,  0.55,  0.75,  1.0};
constexpr std::array kSpeeds = {1.0, 0.6, 0.3};
// Along a wall: into a corner it goes slowly and as far as it gets, since only a turn on the spot sweeps it.
// Slower, it comes to rest sooner: it need not look so far.
struct FollowSpeed
{
    double share;
    double look_s;
};
constexpr std::array<FollowSpeed, 4> kFollowSpeeds{{{1, 0.5}, {0.6, 0.4}, {0.3, 0.3}, {0.16, 0.3}}};
// Beyond this the robot turns on the spot first.
constexpr double kNotAheadDeg = 55;
constexpr double kNearestLooksMm = 400;

// The least clearance on the arc from now on, and the last one.
struct Outlook
{
    double least = 0;
    double last = 0;
    PoseMm end;
};

Outlook outlook(const PoseMm& pose, const Motion& motion, double seconds, std::span<const PointMm> obstacles)
{
    Outlook out{std::numeric_limits<double>::infinity(), 0, pose};
    for (int i = 1; i <= kLooks; ++i) {
        out.end = after(pose, motion, seconds * i / kLooks);
        out.last = clearanceTo(obstacles, out.end.at);
        out.least = std::min(out.least, out.last);
    }
    return out;
}

}  // namespace

PoseMm after(const PoseMm& from, const Motion& motion, double seconds)
{
    const double turned = motion.turn * seconds;
    const double way = motion.forward * seconds;
    const double half = radians({turned / 2});
    const double chord = std::abs(half) < 1e-9 ? way : way * std::sin(half) / half;
    const double heading = radians(from.yaw) + half;
    return {from.at + PointMm{chord * std::cos(heading), chord * std::sin(heading)},
            {from.yaw.value + turned}};
}

double clearanceTo(std::span<const PointMm> points, PointMm at)
{
    double nearest = std::numeric_limits<double>::infinity();
    for (const PointMm p : points) {
        const double dx = p.x - at.x;
        const double dy = p.y - at.y;
        nearest = std::min(nearest, dx * dx + dy * dy);
    }
    return std::sqrt(nearest) - kRobotRadiusMm;
}

std::vector<PointMm> within(std::span<const PointMm> points, PointMm at, double radius_mm)
{
    std::vector<PointMm> out;
    std::copy_if(points.begin(), points.end(), std::back_inserter(out),
                 [&](PointMm p) { return distance(p, at) <= radius_mm; });
    return out;
}

std::optional<Motion> towards(PointMm carrot, double left_mm, const PoseMm& pose,
                              std::span<const PointMm> obstacles, const DriveLimits& limits)
{
    const PointMm way = carrot - pose.at;
    const double ahead = distance(carrot, pose.at);
    const Degrees off = wrapped({degreesOfRadians(std::atan2(way.y, way.x)).value - pose.yaw.value});
    if (ahead > 1 && std::abs(off.value) > kNotAheadDeg) {
        const double turn = std::min(limits.turn_deg_s, std::max(20.0, 2 * std::abs(off.value)));
        return Motion{0, std::copysign(turn, off.value)};
    }
    const double fastest =
        std::clamp(std::sqrt(2 * limits.braking_mm_s2 * std::max(left_mm, 0.0)), 30.0, limits.forward_mm_s);
    const auto near = within(obstacles, pose.at, kRobotRadiusMm + limits.gap_mm + kNearestLooksMm);
    const double now = clearanceTo(near, pose.at);

    std::optional<Motion> best;
    double best_score = -std::numeric_limits<double>::infinity();
    for (const double share : kSpeeds) {
        const double forward = fastest * share;
        // An arc to the carrot itself is always among the fan.
        const double aim = 2 * std::sin(radians(off)) / std::max(ahead, 60.0) * forward;
        for (std::size_t i = 0; i <= kTurns.size(); ++i) {
            const double turn =
                i == kTurns.size() ? degreesOfRadians(aim).value : kTurns.at(i) * limits.turn_deg_s;
            if (std::abs(turn) > limits.turn_deg_s) {
                continue;
            }
            const Motion motion{forward, turn};
            const double seconds = std::min(kLookAheadS, std::max(ahead, 20.0) / forward);
            const Outlook seen = outlook(pose, motion, seconds, near);
            // Too near already: then at least not nearer.
            const bool blocked = seen.least < 3 && !(now < 3 && seen.least >= now - 1 && seen.last > now);
            if (blocked) {
                continue;
            }
            const Degrees end_off = wrapped(
                {degreesOfRadians(std::atan2(carrot.y - seen.end.at.y, carrot.x - seen.end.at.x)).value -
                 seen.end.yaw.value});
            const double rest = distance(seen.end.at, carrot);
            const double cramped = std::max(0.0, limits.gap_mm - seen.least);
            const double score = -rest - (rest > 60 ? 0.5 * std::abs(end_off.value) : 0.0) - 6 * cramped -
                                 0.1 * std::abs(turn);
            if (score > best_score) {
                best_score = score;
                best = motion;
            }
        }
    }
    return best;
}

Motion alongWall(const PoseMm& pose, std::span<const PointMm> obstacles, const FollowManner& manner)
{
    constexpr double kMostAway = 90;
    constexpr double kStep = 6;
    constexpr double kOnTheSpot = 150;

    const auto near = within(obstacles, pose.at, kRobotRadiusMm + kNearestLooksMm);
    const double now = clearanceTo(near, pose.at);
    const double to_wall = manner.wall == Side::Left ? 1 : -1;
    // Too near, it comes away little by little while it drives on.
    const double least = std::min(manner.gap_mm, now - 1);
    const double last = std::min(manner.gap_mm, now + 1);
    const int steps = static_cast<int>((manner.most_towards_deg_s + kMostAway) / kStep);
    for (const auto& [share, look_s] : kFollowSpeeds) {
        for (int i = 0; i <= steps; ++i) {
            const double turn = manner.most_towards_deg_s - i * kStep;
            const Motion motion{share * manner.forward_mm_s, to_wall * turn};
            const Outlook seen = outlook(pose, motion, look_s, near);
            if (seen.least >= least && seen.last >= last && seen.least > 1) {
                return motion;
            }
        }
    }
    return {0, -to_wall * kOnTheSpot};
}

Side sideFor(Degrees obstacle, Degrees wanted)
{
    // With the wall on the right the robot goes a quarter turn to the left of it.
    const double keeping_right = std::abs(wrapped({obstacle.value + 90 - wanted.value}).value);
    const double keeping_left = std::abs(wrapped({obstacle.value - 90 - wanted.value}).value);
    return keeping_right <= keeping_left ? Side::Right : Side::Left;
}

bool wallIsInTheWay(Side wall, Degrees heading, Degrees wanted)
{
    constexpr double kClearlyAway = 25;
    const double left_of_heading = wrapped({wanted.value - heading.value}).value;
    const double away = wall == Side::Right ? left_of_heading : -left_of_heading;
    return away < kClearlyAway;
}

}  // namespace vemra::robot
