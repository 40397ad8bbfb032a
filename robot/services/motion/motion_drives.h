#pragma once

#include "robot/services/core/motion_action.h"
#include "robot/services/motion/motion_turns.h"

namespace vemra::robot {

/// `OpenCloseMove`: both wheels at the speeds of its ports, read on each tick; never ends by itself.
class OpenCloseMoveAction final : public MotionAction
{
public:
    using MotionAction::MotionAction;

private:
    BT::NodeStatus advance() override;
};

/// `GoBackwards`: slowly, never ends by itself.
class GoBackwardsAction final : public MotionAction
{
public:
    using MotionAction::MotionAction;

private:
    BT::NodeStatus advance() override;
};

/// `DetachNode`: straight off a dock or whatever else the robot leans on. Ends when a robot that stood tilted
/// stands level, or else 600 mm away.
class DetachAction final : public MotionAction
{
public:
    using MotionAction::MotionAction;

private:
    bool begin() override;
    BT::NodeStatus advance() override;

    PointMm from_;
    bool tilted_ = false;
};

/// `FixOrientationNode`: faces a point, then drives at it along the straight line from where it began, and
/// ends at the point or beside it. A point that is reached already is a success.
class StraightDriveAction final : public MotionAction
{
public:
    StraightDriveAction(const std::string& name, const BT::NodeParameters& ports, Body& body,
                        const PoseSource& pose)
        : MotionAction(name, ports, body), pose_(pose)
    {}

private:
    bool begin() override;
    BT::NodeStatus advance() override;

    const PoseSource& pose_;
    PointMm from_;
    PointMm to_;
    TurnControl turn_;
    bool facing_ = false;
};

}  // namespace vemra::robot
