#pragma once

#include <deque>
#include <optional>

#include "robot/body/pose_source.h"
#include "robot/services/core/service.h"

namespace vemra::robot {

/// Finds what a robot that follows a wall should look at once more: things too low for the laser. One that
/// lies ahead may be a wire; one that it ran into lies where it cannot see it; and what it feels of the floor
/// ahead may be the edge of a step, which the key `suspect_step` tells by a number. Every place is looked at
/// once.
class ReviewService final : public Service
{
public:
    ReviewService(const RobotParts& parts, const PoseSource& pose) : parts_(parts), pose_(pose) {}

    void install(leaf::LeafHost& host) override;
    void update() override;

private:
    void noteLowThing();
    /// Keeps `suspect_step` to what lies near.
    void noteStep();
    /// The suspected step is near: how far the robot is to turn to it, and where it is.
    [[nodiscard]] BT::NodeStatus stepNearBy(BT::TreeNode& node);
    /// Where something low lies ahead.
    [[nodiscard]] std::optional<PointMm> lowThingAhead() const;
    /// The laser sees nothing close on that side.
    [[nodiscard]] bool laserSeesNothing(Degrees bearing, double within_mm) const;
    [[nodiscard]] PointMm besideBody(Degrees bearing, double away_mm) const;
    /// Whether this place is still to be looked at; if so it counts as looked at from now on.
    bool lookAt(PointMm place);

    RobotParts parts_;
    const PoseSource& pose_;
    std::deque<PointMm> looked_at_;
    std::optional<PointMm> ran_into_;  ///< and not looked at yet
    bool bumped_before_ = false;
    std::optional<PointMm> step_;  ///< suspected, and not looked at yet
    int steps_suspected_ = 0;
};

}  // namespace vemra::robot
