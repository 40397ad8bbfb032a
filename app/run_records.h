#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "app/track_table.h"
#include "robot/base/output_file.h"
#include "robot/drawing/home_picture.h"
#include "robot/drawing/run_picture.h"
#include "robot/events/json_lines.h"
#include "robot/events/timeline_printer.h"
#include "robot/host/robot.h"

namespace vemra::app {

/// What a run leaves in the folder of --out, written as things happen under other names; when the run is over
/// all of it is there, or nothing.
class RunRecords
{
public:
    /// Makes the folder where there is none. Throws robot::InputError when it cannot be written to.
    explicit RunRecords(const std::filesystem::path& folder);

    /// From now on all that the robot logs is written; must outlive the robot.
    void follow(robot::Robot& robot);
    /// To be called after each frame.
    void frame(robot::Robot& robot);
    /// `field`: where the dock is heard is shown too. `wall_s`: what the run took on this machine.
    void write(const robot::Robot& robot, const std::string& title, bool field, double wall_s);

private:
    robot::OutputFolder folder_;
    robot::TimelinePrinter printer_{folder_.stream("timeline.txt"), robot::TimelinePrinter::Colour::Off};
    robot::JsonLines lines_{folder_.stream("events.jsonl")};
    TrackTable track_{folder_.stream("track.csv")};
    robot::LogKeeper drawn_{robot::isDrawn};
    std::vector<robot::TrackPhase> phases_;  ///< of each point of the body's track
};

}  // namespace vemra::app
