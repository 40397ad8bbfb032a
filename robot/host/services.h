#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "robot/belief/localisation.h"
#include "robot/belief/map_store.h"
#include "robot/belief/robot_map.h"
#include "robot/belief/sensor_switches.h"
#include "robot/services/core/service.h"

namespace vemra::robot {

/// What the robot knows, as against what is.
struct Knowledge
{
    explicit Knowledge(Body& body) : localisation(body), map(body, localisation) {}

    Localisation localisation;
    RobotMap map;
    MapStore store;           ///< what is kept of the home
    SensorSwitches switches;  ///< which of its senses count at present
};

using Services = std::vector<std::unique_ptr<Service>>;
using ServiceMaker = std::function<Services(const RobotParts&, Knowledge&, const ScenarioStart&)>;

/// All services of the simulated robot. A new one is made here and known nowhere else; their order has no
/// meaning.
[[nodiscard]] Services makeServices(const RobotParts& parts, Knowledge& knowledge,
                                    const ScenarioStart& start);

}  // namespace vemra::robot
