#include "robot/host/places.h"

#include <fmt/format.h>

#include "robot/base/input_error.h"
#include "robot/world/dock.h"

namespace vemra::robot {
namespace {

class Places
{
public:
    Places(const Scenario& scenario, const Home& home)
        : scenario_(scenario), home_(home), within_{home.origin(), home.farCorner()}
    {}

    void check() const
    {
        if (scenario_.start.pose)
            expectRoom(*scenario_.start.pose, scenario_.start.pose_line, "pose");
        for (const ScenarioEvent& event : scenario_.events) {
            if (const auto* carry = std::get_if<CarryTo>(&event.what))
                expectRoom(carry->pose, event.line, "carry_to");
            else if (const auto* thing = std::get_if<PutDown>(&event.what))
                expectWithin(thing->box, event.line, "box_at");
            else if (const auto* command = std::get_if<AppCommand>(&event.what))
                expectWithin(*command, event.line);
        }
        for (const Expectation& expectation : scenario_.expectations)
            expectWithin(expectation);
    }

private:
    void expectWithin(const Expectation& expectation) const
    {
        if (expectation.state.place)
            expectWithin(*expectation.state.place, expectation.line, "place");
    }
    void expectWithin(PointMm point, int line, const char* what) const
    {
        if (contains(within_, point))
            return;
        throw InputError(
            scenario_.file, line,
            fmt::format("\"{}\": expected a place within the home, x from {:.2f} to {:.2f} m and y from "
                        "{:.2f} to {:.2f} m, not [{:g}, {:g}]",
                        what, within_.low.x / 1000, within_.high.x / 1000, within_.low.y / 1000,
                        within_.high.y / 1000, point.x / 1000, point.y / 1000));
    }
    void expectWithin(const AreaMm& area, int line, const char* what) const
    {
        expectWithin(area.low, line, what);
        expectWithin(area.high, line, what);
    }
    void expectWithin(const AppCommand& command, int line) const
    {
        for (const AreaMm& area : command.areas)
            expectWithin(area, line, "areas");
        for (const PointMm point : command.points)
            expectWithin(point, line, "areas");
    }

    void expectRoom(const PoseMm& pose, int line, const char* what) const
    {
        expectWithin(pose.at, line, what);
        if (!home_.isDiscFree(pose.at, kRobotRadiusMm))
            throw InputError(
                scenario_.file, line,
                fmt::format("\"{}\": expected a place where the robot has room ({} mm around it), "
                            "not [{}, {}]",
                            what, kRobotRadiusMm, pose.at.x / 1000, pose.at.y / 1000));
    }

    const Scenario& scenario_;
    const Home& home_;
    BoxMm within_;
};

}  // namespace

void checkPlaces(const Scenario& scenario, const Home& home)
{
    Places(scenario, home).check();
}

}  // namespace vemra::robot
