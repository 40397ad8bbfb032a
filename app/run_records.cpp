#include "app/run_records.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "robot/drawing/home_picture.h"
#include "robot/drawing/run_picture.h"

namespace vemra::app {
namespace {

constexpr double kPixelsAPoint = 2;

/// Cut where the robot was put down and where it began to do something else.
std::vector<robot::TrackStretch> trackOf(const robot::Body& body,
                                         const std::vector<robot::TrackPhase>& phases)
{
    std::vector<robot::TrackStretch> stretches;
    for (std::size_t i = 0; i < body.track().size(); ++i) {
        const robot::Body::TrackPoint& point = body.track()[i];
        const robot::TrackPhase phase = i < phases.size() ? phases[i] : robot::TrackPhase::Drive;
        if (stretches.empty() || point.carried_here || phase != stretches.back().phase)
            stretches.push_back({{}, phase, point.carried_here && i > 0});
        stretches.back().points.push_back(point.pose.at);
    }
    return stretches;
}

}  // namespace

RunRecords::RunRecords(const std::filesystem::path& folder)
    : folder_(folder, {"timeline.txt", "events.jsonl", "track.csv", "report.json", "timeline.png", "home.png",
                       "home.svg"})
{}

void RunRecords::follow(robot::Robot& robot)
{
    robot.addSink(printer_);
    robot.addSink(lines_);
    robot.addSink(drawn_);
}

void RunRecords::frame(robot::Robot& robot)
{
    track_.frame(robot);
    std::string motion;
    robot.blackboard().get("current_motion_type", motion);
    phases_.resize(robot.body().track().size(), robot::phaseOfMotion(motion));
}

void RunRecords::write(const robot::Robot& robot, const std::string& title, bool field, double wall_s)
{
    nlohmann::ordered_json report = robot.report();
    report["wall_s"] = std::round(wall_s * 100) / 100;
    folder_.add("report.json", report.dump(2) + "\n");
    folder_.add("timeline.png",
                robot::pngBytes(robot::runPicture(drawn_.entries(), robot.frame(), title), kPixelsAPoint));
    robot::HomeMarks marks{.title = title,
                           .dock = robot.dock(),
                           .robot = robot.body().truePose(),
                           .walls = robot.virtualWalls(),
                           .track = trackOf(robot.body(), phases_),
                           .missed_mm = robot.missedFloorMm()};
    // Before anything is swept all floor is missed.
    if (robot.sweptM2() > 0)
        marks.missed = robot.missedFloor();
    if (field)
        marks.field = robot::fieldFloor(*robot.world().dockField(), robot.world().visible());
    const robot::Picture home = robot::homePicture(robot.home(), std::move(marks));
    folder_.add("home.png", robot::pngBytes(home, kPixelsAPoint));
    folder_.add("home.svg", robot::svgBytes(home));
    folder_.write();
}

}  // namespace vemra::app
