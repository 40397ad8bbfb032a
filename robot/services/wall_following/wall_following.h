#pragma once

#include <cstdint>
#include <deque>
#include <optional>

#include "robot/planning/arcs.h"
#include "robot/services/core/service.h"
#include "robot/services/navigation/drive/navigation_drive.h"
#include "robot/services/navigation/search/navigation_search.h"

namespace vemra::robot {

/// Leaves that follow a wall: on which side (`follow_wall_dir`, true: the wall is on the right), how
/// (`SetFollowWallCmd`), the step itself (`SensorConsole`) and when to stop. The side is chosen by the last
/// contact, or so that the way along the wall leads where the planned path does.
class WallFollowing final : public Service
{
public:
    WallFollowing(const RobotParts& parts, const DriveView& view, const NavigationSearch& search)
        : parts_(parts), view_(view), search_(search)
    {}

    void install(leaf::LeafHost& host) override;

private:
    struct Command
    {
        bool ignore_base = false;
        bool low_speed = false;
        bool precise = false;
    };
    struct Collision
    {
        PointMm at;
        std::uint64_t frame;
    };

    void installSides(leaf::LeafHost& host);
    void installLimits(leaf::LeafHost& host);
    [[nodiscard]] Side side() const;
    void setSide(Side side);
    void setSideByContact(std::string_view bump_dir);
    [[nodiscard]] std::optional<Degrees> headingToObstacle() const;
    [[nodiscard]] std::optional<Degrees> headingOfPlan() const;
    [[nodiscard]] bool collidesAgainAndAgain();
    [[nodiscard]] FollowManner manner(Side side) const;

    RobotParts parts_;
    const DriveView& view_;
    const NavigationSearch& search_;
    Command command_;
    std::optional<Degrees> navigate_direction_;
    std::deque<Collision> collisions_;
};

}  // namespace vemra::robot
