#pragma once

#include <map>
#include <string>
#include <vector>

#include "robot/belief/map_store.h"
#include "robot/belief/robot_map.h"
#include "robot/services/core/service.h"

namespace vemra::robot {

/// The stored map of the home, its rooms among it: kept at the end of a task that drew one, loaded at
/// power-on and when a task begins on it, and with it what the user forbade on it. `segment_map` and
/// `segments_layer` hold the map of rooms.
class MapService final : public Service
{
public:
    MapService(const RobotParts& parts, RobotMap& map, MapStore& store, const ScenarioStart& start);

    void install(leaf::LeafHost& host) override;

private:
    void installStore(leaf::LeafHost& host);
    void keep(bool anew);
    void forget();
    void takeUp();
    void showRooms();
    void keepWalls();
    void showWalls();
    void presetKeys();
    void cleanComplete();
    /// Whether the rooms of a timed order become the robot's task: while it charges, while it does a task of
    /// that kind, and while it rests without a task.
    [[nodiscard]] bool takesOrder(Mode order) const;

    RobotParts parts_;
    RobotMap& map_;
    MapStore& store_;
    double check_result_;                               ///< what SLAM's check of it comes to; 0 is good
    std::map<std::string, std::vector<double>> walls_;  ///< stored with it, under the app's names
    bool drawn_ = false;                                ///< a task has ended whose map is to be kept
};

}  // namespace vemra::robot
