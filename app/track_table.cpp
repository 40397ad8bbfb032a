#include "app/track_table.h"

#include <fmt/format.h>

#include <iterator>

#include "robot/base/clock.h"

namespace vemra::app {
namespace {

constexpr std::uint64_t kFramesARow = 10;

}  // namespace

TrackTable::TrackTable(std::ostream& out) : out_(out)
{
    out_ << "frame,time_s,x_mm,y_mm,yaw_deg,believed_x_mm,believed_y_mm,believed_yaw_deg,left_mm_s,"
            "right_mm_s,battery_percent,mode,swept_m2\n";
}

void TrackTable::frame(const robot::Robot& robot)
{
    // The frame that is over.
    const std::uint64_t frame = robot.frame() - 1;
    const robot::Mode mode = robot.state().modes.current();
    if (mode == mode_ && frame % kFramesARow != 0)
        return;
    mode_ = mode;
    const robot::PoseMm is = robot.body().truePose();
    const robot::PoseMm believed = robot.believedPose();
    const robot::WheelSpeeds wheels = robot.body().wheelSpeeds();
    fmt::format_to(std::ostreambuf_iterator<char>(out_),
                   "{},{:.2f},{:.1f},{:.1f},{:.2f},{:.1f},{:.1f},{:.2f},{:.0f},{:.0f},{:.2f},{},{:.2f}\n",
                   frame, static_cast<double>(frame * robot::kFrameMs) / 1000, is.at.x, is.at.y,
                   robot::wrapped(is.yaw).value, believed.at.x, believed.at.y,
                   robot::wrapped(believed.yaw).value, wheels.left, wheels.right,
                   robot.state().battery_percent, robot::toText(mode), robot.sweptM2());
}

}  // namespace vemra::app
