#pragma once

#include <functional>

#include "robot/events/event.h"

namespace vemra::robot {

/// How a service tells the run's event log what happened.
using Report = std::function<void(Event)>;

}  // namespace vemra::robot
