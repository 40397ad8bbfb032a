#pragma once

#include "leaves/host/host.h"
#include "robot/base/chance.h"
#include "robot/body/body.h"
#include "robot/scenario/scenario.h"
#include "robot/services/core/report.h"
#include "robot/services/core/robot_state.h"

namespace vemra::robot {

/// What all services of a robot share. All of it outlives them.
struct RobotParts
{
    BT::Blackboard& blackboard;
    Report report;   ///< into the run's event log
    Chance& chance;  ///< the run's one source of chance; take a branch of it and keep that
    RobotState& state;
    Body& body;
};

/// A part of the robot that answers leaves of the trees. Services meet in the robot's parts and on the
/// blackboard and nowhere else; none relies on its place among the others.
class Service
{
public:
    Service() = default;
    virtual ~Service() = default;
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    /// Registers the leaves that it answers; once, before a tree is made.
    virtual void install(leaf::LeafHost& host) = 0;
    /// The beginning of a frame, after the state was brought up to date and before the tick.
    virtual void update() {}
    /// What a scenario lets happen, before the frame's update(); false if it is no concern of this service.
    virtual bool take(const Happening& /*what*/) { return false; }
};

}  // namespace vemra::robot
