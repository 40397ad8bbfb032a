#pragma once

#include "robot/services/bridges/bridges.h"
#include "robot/services/maps/borders.h"
#include "robot/services/maps/grid_maps.h"
#include "robot/services/maps/steps.h"
#include "robot/services/navigation/drive/navigation_drive.h"
#include "robot/services/navigation/explore/navigation_explore.h"
#include "robot/services/navigation/explore/random_points.h"
#include "robot/services/navigation/goals/trajectory.h"
#include "robot/services/navigation/search/navigation_search.h"

namespace vemra::robot {

/// All that finds and drives ways on the robot's map, and fills it: searches, bridges, the track, drives. The
/// map and the switches must outlive it.
class NavigationService final : public Service
{
public:
    NavigationService(const RobotParts& parts, RobotMap& map, const SensorSwitches& switches);

    void install(leaf::LeafHost& host) override;
    void update() override;

    /// Here other services settle how a search mode picks its goal.
    [[nodiscard]] NavigationSearch& search() { return search_; }
    /// What a drive of another service needs to see.
    [[nodiscard]] const DriveView& view() const { return view_; }
    /// Where borders that count as walls are felt.
    [[nodiscard]] const BorderLeaves& borders() const { return borders_; }
    [[nodiscard]] const StepLeaves& steps() const { return steps_; }

private:
    void installRandomPoint(leaf::LeafHost& host);

    RobotParts parts_;
    Chance chance_;
    RobotMap& map_;
    DriveView view_;
    GridMapService grid_maps_;
    BorderLeaves borders_;
    StepLeaves steps_;
    TrajectoryService trajectory_;
    BridgeService bridges_;
    NavigationSearch search_;
    ExploreLeaves explore_;
    RandomPoints random_points_;
};

}  // namespace vemra::robot
