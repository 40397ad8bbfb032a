#pragma once

#include <memory>
#include <vector>

#include "robot/services/service.h"

namespace vemra::robot {

/// All services of the simulated robot. A new one is made here and known nowhere else; their order has no
/// meaning.
[[nodiscard]] std::vector<std::unique_ptr<Service>> makeServices(const RobotParts& parts,
                                                                 const ScenarioStart& start);

}  // namespace vemra::robot
