#pragma once

#include "trees/idioms.h"

namespace vemra::trees {

/// A straight run without a map, long enough to give SLAM a baseline: a smooth start, `frames_at_full_speed`
/// at full speed, a smooth stop. What comes in the way ends the whole run, with a step back and a pause.
Node blind_advance(int frames_at_full_speed);

}  // namespace vemra::trees
