#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "robot/drawing/picture.h"
#include "robot/events/event_log.h"

namespace vemra::robot {

/// The time line of a run, from frame 0 to `frames`: bands for mode, task state, light, station light and the
/// dock; marks for what the scenario did, for errors, for music and for approaches to the dock; the battery
/// as a curve. Of other kinds than isDrawn nothing is to be seen.
Picture runPicture(const std::vector<LogEntry>& entries, std::uint64_t frames, std::string title);

[[nodiscard]] bool isDrawn(const Event& event);

}  // namespace vemra::robot
