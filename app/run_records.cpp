#include "app/run_records.h"

#include <utility>
#include <vector>

#include "robot/drawing/home_picture.h"
#include "robot/drawing/run_picture.h"

namespace vemra::app {
namespace {

constexpr double kPixelsAPoint = 2;

std::vector<std::vector<robot::PointMm>> trackOf(const robot::Body& body)
{
    std::vector<std::vector<robot::PointMm>> stretches;
    for (const robot::Body::TrackPoint& point : body.track()) {
        if (stretches.empty() || point.carried_here)
            stretches.emplace_back();
        stretches.back().push_back(point.pose.at);
    }
    return stretches;
}

}  // namespace

RunRecords::RunRecords(const std::filesystem::path& folder)
    : folder_(folder,
              {"timeline.txt", "events.jsonl", "track.csv", "report.json", "timeline.png", "home.png"})
{}

void RunRecords::follow(robot::Robot& robot)
{
    robot.addSink(printer_);
    robot.addSink(lines_);
    robot.addSink(drawn_);
}

void RunRecords::write(const robot::Robot& robot, const std::string& title)
{
    folder_.add("report.json", robot.report().dump(2) + "\n");
    folder_.add("timeline.png",
                robot::pngBytes(robot::runPicture(drawn_.entries(), robot.frame(), title), kPixelsAPoint));
    robot::HomeMarks marks{.title = title,
                           .dock = robot.dock(),
                           .robot = robot.body().truePose(),
                           .walls = robot.virtualWalls(),
                           .track = trackOf(robot.body()),
                           .missed_mm = robot.missedFloorMm()};
    // Before anything is swept all floor is missed.
    if (robot.sweptM2() > 0)
        marks.missed = robot.missedFloor();
    folder_.add("home.png",
                robot::pngBytes(robot::homePicture(robot.home(), std::move(marks)), kPixelsAPoint));
    folder_.write();
}

}  // namespace vemra::app
