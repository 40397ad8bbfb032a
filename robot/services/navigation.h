#pragma once

#include "robot/services/bridges.h"
#include "robot/services/grid_maps.h"
#include "robot/services/navigation_drive.h"
#include "robot/services/navigation_search.h"
#include "robot/services/trajectory.h"
#include "robot/services/wall_following.h"

namespace vemra::robot {

/// The robot's map and all that finds and drives ways on it: searches, bridges, the track, drives, walls that
/// are followed. The pose and the switches must outlive it.
class NavigationService final : public Service
{
public:
    NavigationService(const RobotParts& parts, const PoseSource& pose, const SensorSwitches& switches);

    void install(leaf::LeafHost& host) override;
    void update() override;

    /// What the robot knows of the floor; the coverage and what is drawn of it start from here.
    [[nodiscard]] RobotMap& map() { return map_; }
    /// Here other services settle how a search mode picks its goal.
    [[nodiscard]] NavigationSearch& search() { return search_; }

private:
    void installRandomPoint(leaf::LeafHost& host);

    RobotParts parts_;
    Chance chance_;
    RobotMap map_;
    DriveView view_;
    GridMapService grid_maps_;
    TrajectoryService trajectory_;
    BridgeService bridges_;
    NavigationSearch search_;
    WallFollowing wall_following_;
};

}  // namespace vemra::robot
