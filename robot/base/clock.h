#pragma once

namespace vemra::robot {

/// One frame of the clock, a tick of the root tree.
inline constexpr int kFrameMs = 20;

}  // namespace vemra::robot
