#pragma once

#include "robot/belief/robot_map.h"
#include "robot/belief/sensor_switches.h"
#include "robot/planning/arcs.h"
#include "robot/services/blackboard/navigation_plan.h"
#include "robot/services/core/motion_action.h"

namespace vemra::robot {

/// What a drive needs to see.
struct DriveView
{
    const RobotMap& map;
    const SensorSwitches& switches;
};

/// `DwaLocalPlanner` and `BridgeNavi`: along the line of port `path`, around what stands in the way as far as
/// that goes. Ends well at the end of the line; fails when every way on is blocked or the robot gets no
/// nearer to the end for a while.
class PathDriveAction final : public MotionAction
{
public:
    PathDriveAction(const std::string& name, const BT::NodeParameters& ports, Body& body,
                    const DriveView& view)
        : MotionAction(name, ports, body), view_(view)
    {}

private:
    bool begin() override;
    BT::NodeStatus advance() override;
    [[nodiscard]] bool stuck(double left_mm);
    void decide(const PoseMm& pose, double left_mm);

    const DriveView& view_;
    LinePtr line_;
    double length_mm_ = 0;
    double along_mm_ = 0;
    double best_left_mm_ = 0;
    int frames_without_gain_ = 0;
    int frames_blocked_ = 0;
    int frames_backing_ = 0;
    int times_backed_ = 0;
    int frames_ = 0;
    Motion motion_;
};

/// `NaviOnePoint`: turns to the point and drives straight to it, without looking at the map. Fails when it
/// gets no nearer or goes past the point.
class PointDriveAction final : public MotionAction
{
public:
    PointDriveAction(const std::string& name, const BT::NodeParameters& ports, Body& body,
                     const DriveView& view)
        : MotionAction(name, ports, body), view_(view)
    {}

private:
    bool begin() override;
    BT::NodeStatus advance() override;

    const DriveView& view_;
    PointMm to_;
    double best_mm_ = 0;
    int frames_without_gain_ = 0;
    bool facing_ = false;
};

}  // namespace vemra::robot
