#pragma once

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "app/track_table.h"
#include "robot/base/output_file.h"
#include "robot/drawing/home_picture.h"
#include "robot/events/json_lines.h"
#include "robot/events/timeline_printer.h"
#include "robot/host/robot.h"

namespace vemra::app {

/// What a run leaves in the folder of --out, kept until the run is over and then written, all of it or
/// nothing.
class RunRecords
{
public:
    /// Makes the folder where there is none. Throws robot::InputError when it cannot be written to.
    explicit RunRecords(const std::filesystem::path& folder);

    /// From now on all that the robot logs is kept; must outlive the robot.
    void follow(robot::Robot& robot);
    /// To be called after each frame.
    void frame(robot::Robot& robot);
    /// `field`: where the dock is heard is shown too. `wall_s`: what the run took on this machine.
    void write(const robot::Robot& robot, const std::string& title, bool field, double wall_s);

private:
    robot::OutputFolder folder_;
    std::ostringstream timeline_;
    std::ostringstream json_;
    robot::TimelinePrinter printer_{timeline_, robot::TimelinePrinter::Colour::Off};
    robot::JsonLines lines_{json_};
    TrackTable track_;
    std::vector<robot::TrackPhase> phases_;  ///< of each point of the body's track
};

}  // namespace vemra::app
