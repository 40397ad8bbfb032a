#pragma once

#include "robot/belief/robot_map.h"
#include "robot/belief/sensor_switches.h"
#include "robot/planning/planning_map.h"
#include "robot/services/core/service.h"

namespace vemra::robot {

/// The planning map of now: the robot's map with obstacles grown, what it bumped into, and the virtual walls
/// that are switched on.
[[nodiscard]] PlanningMap planningMapOf(const RobotMap& map, const SensorSwitches& switches);

/// Forbids the robot's middle the cells that are closed.
void closeRooms(PlanningMap& plan, const Grid<unsigned char>& closed);

/// Where something is near the robot that a drive has to keep off: things, and the edges of virtual walls
/// and borders that are switched on.
[[nodiscard]] std::vector<PointMm> obstaclesAround(const RobotMap& map, const SensorSwitches& switches,
                                                   double radius_mm);

/// Leaves that make and copy maps, say what driving may draw, and know the map's limit and the virtual walls.
/// Keeps `obstacle_expanded_map` (after MakeMap), `gridmap_limit`, `current_draw_mode`.
class GridMapService final : public Service
{
public:
    GridMapService(const RobotParts& parts, RobotMap& map, const SensorSwitches& switches)
        : parts_(parts), map_(map), switches_(switches)
    {}

    void install(leaf::LeafHost& host) override;
    void update() override;

private:
    class DrawModeAction;

    void installVirtualWalls(leaf::LeafHost& host);
    void generateVirtualWalls();
    BT::NodeStatus findWayOutOfVirtualWall();
    void showDrawMode();

    RobotParts parts_;
    RobotMap& map_;
    const SensorSwitches& switches_;
    const void* draw_mode_lock_ = nullptr;
};

}  // namespace vemra::robot
