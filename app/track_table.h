#pragma once

#include <optional>
#include <ostream>

#include "robot/host/robot.h"

namespace vemra::app {

/// Where a run was when, as a table that plotting tools open: comma-separated values under a head, five rows
/// a second and one for each change of mode. Poses in millimetres and degrees, speeds in mm/s, floor in
/// square metres.
class TrackTable
{
public:
    /// Writes its head; out must outlive it.
    explicit TrackTable(std::ostream& out);

    /// To be called after each frame.
    void frame(const robot::Robot& robot);

private:
    std::ostream& out_;
    std::optional<robot::Mode> mode_;
};

}  // namespace vemra::app
