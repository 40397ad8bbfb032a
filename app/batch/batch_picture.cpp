#include "app/batch/batch_picture.h"

#include <fmt/format.h>

#include <algorithm>

#include "robot/drawing/home_picture.h"
#include "robot/host/start_field.h"

namespace vemra::app {
namespace {

constexpr double kPixelsAPoint = 2;

}  // namespace

void writeBatchPicture(const std::filesystem::path& file, const BatchCase& like,
                       const std::vector<nlohmann::ordered_json>& lines)
{
    robot::HomeMarks marks;
    marks.dock = like.dock;
    const bool lost = like.scenario.start.lost;
    if (lost)
        marks.good_start = "found its place";
    else
        marks.field = robot::fieldFloor(robot::fieldAtStart(like.dock, like.scenario.start.dock), like.home);
    for (const auto& line : lines) {
        const auto pose = line.at("pose").get<std::vector<double>>();
        marks.starts.push_back(
            {{{1e3 * pose.at(0), 1e3 * pose.at(1)}, {pose.at(2)}}, line.at("good").get<bool>()});
    }
    const auto good = std::count_if(marks.starts.begin(), marks.starts.end(),
                                    [](const robot::StartMark& start) { return start.good; });
    marks.title =
        fmt::format("{}: {} of {} {}", like.tree, good, marks.starts.size(), lost ? "found" : "docked");
    robot::writePng(file, robot::homePicture(like.home, std::move(marks)), kPixelsAPoint);
}

}  // namespace vemra::app
