#pragma once

#include "robot/services/core/motion_action.h"

namespace vemra::robot {

/// A turn, watched by the gyro, that slows down towards its end.
class TurnControl
{
public:
    /// turn_deg to the left; the speeds are at most these.
    void begin(const Body& body, double turn_deg, double deg_s);
    /// What is left to turn.
    [[nodiscard]] double remaining(const Body& body) const;
    [[nodiscard]] bool done(const Body& body) const;
    /// The turn rate to order now, degrees/s.
    [[nodiscard]] double rate(const Body& body) const;

private:
    double target_deg_ = 0;  ///< by odometry
    double deg_s_ = 0;
};

/// `Rotate`: on the spot, by an angle, or the short way to a heading on the map.
class RotateAction final : public MotionAction
{
public:
    RotateAction(const std::string& name, const BT::NodeParameters& ports, Body& body, const PoseSource& pose)
        : MotionAction(name, ports, body), pose_(pose)
    {}

private:
    bool begin() override;
    BT::NodeStatus advance() override;

    const PoseSource& pose_;
    TurnControl turn_;
};

/// `TurnAround`: an arc of turn_radius mm by turn_angle degrees, no faster than either limit.
class TurnAroundAction final : public MotionAction
{
public:
    using MotionAction::MotionAction;

private:
    bool begin() override;
    BT::NodeStatus advance() override;

    TurnControl turn_;
    double radius_mm_ = 0;
};

}  // namespace vemra::robot
