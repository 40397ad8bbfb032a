#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "behaviortree_cpp/condition_node.h"
#include "robot/planning/arcs.h"
#include "robot/services/core/robot_state.h"
#include "robot/services/navigation/drive/navigation_drive.h"

namespace vemra::robot {

/// `SensorConsole`: drives along a wall for as long as it is ticked; straight on where there is none. A
/// contact makes it back off a little and turn away from the wall. Fails when contact follows contact and it
/// gets nowhere, and when it has looked all around and there is no way on.
class FollowStepAction final : public MotionAction
{
public:
    using Manner = std::function<FollowManner(const BT::TreeNode&)>;

    FollowStepAction(const std::string& name, const BT::NodeParameters& ports, Body& body,
                     const DriveView& view, Manner manner)
        : MotionAction(name, ports, body), view_(view), manner_(std::move(manner))
    {}

private:
    bool begin() override;
    BT::NodeStatus advance() override;

    const DriveView& view_;
    Manner manner_;
    int back_off_frames_ = 0;
    double turn_away_deg_ = 0;
    double turned_from_deg_ = 0;
    int contacts_in_vain_ = 0;
    int frames_without_wall_ = 0;
    PointMm contact_at_;
    double spun_deg_ = 0;  ///< on the spot, since it last got on
    PointMm spun_at_;
};

/// `FollowWallNotLooped`: passes until the track since the beginning of the follow comes back to itself. A
/// follow begins when the condition was not asked in the frame before. `trace_start_index` may set its
/// beginning to a point of the track; the rounds so far go to `out_loop_num`.
class NotLoopedCondition final : public BT::ConditionNode
{
public:
    NotLoopedCondition(const std::string& name, const BT::NodeParameters& ports, const RobotMap& map,
                       const RobotState& state)
        : ConditionNode(name, ports), map_(map), state_(state)
    {}

private:
    BT::NodeStatus tick() override;
    [[nodiscard]] bool closesNow(std::size_t from) const;

    const RobotMap& map_;
    const RobotState& state_;
    std::uint64_t asked_in_ = 0;
    std::size_t begins_at_ = 0;
    std::size_t looked_at_ = 0;
    int rounds_ = 0;
};

}  // namespace vemra::robot
