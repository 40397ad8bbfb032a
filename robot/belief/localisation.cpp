#include "robot/belief/localisation.h"

#include <cmath>

namespace vemra::robot {
namespace {

// Ways after which an error comes round again; no two in step.
constexpr double kRoundOfXMm = 7300;
constexpr double kRoundOfYMm = 5900;
constexpr double kRoundOfYawMm = 8900;

PointMm rotated(PointMm p, Degrees turn)
{
    const double c = std::cos(radians(turn));
    const double s = std::sin(radians(turn));
    return {c * p.x - s * p.y, s * p.x + c * p.y};
}

double wave(double way_mm, double round_mm)
{
    return std::sin(2 * std::numbers::pi * way_mm / round_mm);
}

}  // namespace

Localisation::Localisation(const Body& body, const Config& config) : body_(body), config_(config)
{}

PoseMm Localisation::onMap() const
{
    const PoseMm& truth = body_.truePose();
    return {ofWorld(truth.at), {truth.yaw.value + turned_.value}};
}

PoseMm Localisation::pose() const
{
    if (localised_) {
        PoseMm pose = onMap();
        const double way = body_.runMm();
        pose.at.x += config_.place_error_mm * wave(way, kRoundOfXMm);
        pose.at.y += config_.place_error_mm * wave(way, kRoundOfYMm);
        pose.yaw.value += config_.yaw_error.value * wave(way, kRoundOfYawMm);
        return pose;
    }
    const PoseMm& now = body_.odometry();
    const Degrees turn{lost_at_.yaw.value - lost_odometry_.yaw.value};
    return {lost_at_.at + rotated(now.at - lost_odometry_.at, turn), {now.yaw.value + turn.value}};
}

void Localisation::feel(bool docked)
{
    constexpr double kJustNowS = 0.02;
    if (docked) {
        localised_ = true;
    } else if (body_.feltMovedWithin(kJustNowS)) {
        lose();
    }
}

void Localisation::lose()
{
    if (localised_) {
        lost_at_ = pose();
        lost_odometry_ = body_.odometry();
        localised_ = false;
    }
}

void Localisation::restart(const PoseMm& pose)
{
    const PoseMm& truth = body_.truePose();
    turned_ = {pose.yaw.value - truth.yaw.value};
    shifted_ = pose.at - rotated(truth.at, turned_);
    localised_ = true;
    ++restarts_;
}

void Localisation::believe(const PoseMm& pose)
{
    constexpr double kNearMm = 150;
    constexpr double kNearDeg = 5;
    const PoseMm right = onMap();
    if (distance(right.at, pose.at) <= kNearMm &&
        std::abs(wrapped({right.yaw.value - pose.yaw.value}).value) <= kNearDeg) {
        localised_ = true;
    } else {
        restart(pose);
    }
}

PointMm Localisation::ofWorld(PointMm in_world) const
{
    return rotated(in_world, turned_) + shifted_;
}

PointMm Localisation::inWorld(PointMm on_map) const
{
    return rotated(on_map - shifted_, {-turned_.value});
}

}  // namespace vemra::robot
