#pragma once

#include <functional>

#include "robot/services/core/motion_action.h"
#include "robot/services/core/robot_state.h"
#include "robot/services/dock_signal/dock_hearing.h"

namespace vemra::robot {

/// What the drives along the dock's signal share: RUNNING until they are halted, the wheels off while the
/// charging contacts touch.
class DockDrive : public MotionAction
{
public:
    /// `look` is called in each frame of the drive: the laser's look at the wall of the dock.
    DockDrive(const std::string& name, const BT::NodeParameters& ports, Body& body,
              const DockHearing& hearing, const RobotState& state, const std::function<void()>& look)
        : MotionAction(name, ports, body), hearing_(hearing), state_(state), look_(look)
    {}

protected:
    /// One frame of the drive, with the contacts apart.
    virtual BT::NodeStatus approach() = 0;

    /// How far beside the dock's middle line the robot is, to the dock's left, and the dock's own heading in
    /// the frame of the odometry; no value until the robot was on that line.
    struct BesideLine
    {
        Degrees looks;
        double to_left_mm = 0;
    };
    [[nodiscard]] std::optional<BesideLine> besideLine();

    /// Drives on and turns so that a bearing goes to 0; on the spot where it is too far to the side.
    void steer(double mm_s, double bearing_deg);
    [[nodiscard]] const DockHearing& hearing() const { return hearing_; }
    [[nodiscard]] const RobotState& state() const { return state_; }

private:
    BT::NodeStatus advance() final;

    const DockHearing& hearing_;
    const RobotState& state_;
    const std::function<void()>& look_;
};

/// Up to the emitter by the balance of the front receivers.
class FollowDockSignalAction final : public DockDrive
{
public:
    using DockDrive::DockDrive;

private:
    BT::NodeStatus approach() override;
};

/// To the middle line, 500 mm before the face, and from there up to the emitter.
class FollowDockSignalFindCenterAction final : public DockDrive
{
public:
    using DockDrive::DockDrive;

private:
    BT::NodeStatus approach() override;
};

/// What the final approaches of a robot remember from one to the next.
struct FinalApproaches
{
    double failed_at_mm = 1e9;  ///< how near the dock was when the last one lost the signal
    std::uint64_t begun = 0;    ///< how many there were
};

/// Along the middle line to the contacts. Fails when the front receivers heard nothing for 50 frames: the
/// first time, then only nearer to the dock than at the last failure, or when the middle line has not been
/// heard for 100 frames. A failure that changed nothing would be repeated for ever.
class FollowDockSignalFinalAction final : public DockDrive
{
public:
    FollowDockSignalFinalAction(const std::string& name, const BT::NodeParameters& ports, Body& body,
                                const DockHearing& hearing, const RobotState& state,
                                const std::function<void()>& look, FinalApproaches& approaches)
        : DockDrive(name, ports, body, hearing, state, look), approaches_(approaches)
    {}

private:
    bool begin() override;
    BT::NodeStatus approach() override;

    FinalApproaches& approaches_;
    std::uint64_t begun_ = 0;
    double nearest_mm_ = 1e9;
};

/// An arc around the dock: 500 mm from the emitter, "Indirect" 800 mm. "Left": the dock stays on the robot's
/// left. Once the receiver on the dock's side hears the middle line, or what lies beyond it, the near arc
/// sets docking_small_loop_break to "true"; the far one is watched over by its tree.
class SurroundChargerAction final : public DockDrive
{
public:
    using DockDrive::DockDrive;

private:
    bool begin() override;
    BT::NodeStatus approach() override;
    [[nodiscard]] bool passedLine() const;

    bool left_ = true;
    double radius_mm_ = 0;
    PointMm guess_;  ///< where the dock would be, if it was never heard
};

/// Backwards along the middle line onto the contacts.
class BackOntoDockAction final : public DockDrive
{
public:
    using DockDrive::DockDrive;

private:
    BT::NodeStatus approach() override;
};

}  // namespace vemra::robot
