#pragma once

#include <vector>

#include "robot/body/body.h"
#include "robot/vocabulary/escape_kinds.h"

namespace vemra::robot {

struct WheelStep
{
    WheelSpeeds speeds;
    int frames = 0;
};

/// What the wheels try, step after step, to get the robot out; `felt` is where it feels something in front.
/// An escape that is over sooner leaves the rest.
[[nodiscard]] std::vector<WheelStep> escapePath(EscapeKind kind, const Sides& felt);

/// Out into the open, where the same trouble came back: a turn to where the laser sees the most room and a
/// run there. With `turn` 1, 2, ... to the next best opening, for what the laser does not see.
[[nodiscard]] std::vector<WheelStep> pathIntoTheOpen(const LaserScan& scan, std::size_t turn);

/// Whether all of the path has to be driven: it leads away from the place, and only that helps.
[[nodiscard]] bool leadsAway(EscapeKind kind);

}  // namespace vemra::robot
