#include <gmock/gmock.h>

#include "robot/robot_rig.h"
#include "robot/services/power/power.h"

namespace vemra::robot {
namespace {

using testing::Gt;
using testing::Lt;

class PowerRig : public RobotRig
{
public:
    explicit PowerRig(const ScenarioStart& start)
        : RobotRig(sketch(room(40, 40)), {{1000, 1000}, {0}}), power(parts, start)
    {
        install();
    }
    ~PowerRig() override { dropTrees(); }
    bool isAbove(const char* percent) { return passes("RobotPowerGetHigherThan", {{"capability", percent}}); }
    double usedIn(int count)
    {
        const double before = state.battery_percent;
        frames(count);
        return before - state.battery_percent;
    }

    PowerService power;

private:
    std::vector<Service*> services() override { return {&power}; }
};

ScenarioStart at(double percent)
{
    ScenarioStart start;
    start.battery = percent;
    return start;
}

TEST(Power, IsAboveALimitOnlyBeyondItButAFullBatteryIsFull)
{
    PowerRig rig(at(16));
    EXPECT_FALSE(rig.isAbove("16"));
    EXPECT_TRUE(rig.isAbove("15"));
    rig.state.battery_percent = 16.01;
    EXPECT_TRUE(rig.isAbove("16"));
    rig.state.battery_percent = 100;
    EXPECT_TRUE(rig.isAbove("100"));
    rig.state.battery_percent = 99.9;
    EXPECT_FALSE(rig.isAbove("100"));
}

TEST(Power, DrainsByWhatRuns)
{
    PowerRig rig(at(50));
    const double at_rest = rig.usedIn(500);
    EXPECT_THAT(at_rest, Gt(0));
    rig.state.brushes_on = true;
    rig.state.fan_on = true;
    const double cleaning = rig.usedIn(500);
    EXPECT_THAT(cleaning, Gt(3 * at_rest));
    rig.body.drive({300, 300});
    EXPECT_THAT(rig.usedIn(100) * 5, Gt(1.1 * cleaning));
    rig.body.stop();
    rig.state.contacts.update(true);
    EXPECT_THAT(rig.usedIn(500), Lt(0));
}

TEST(Power, AnEmptyBatteryStopsTheRobot)
{
    PowerRig rig(at(0.001));
    rig.body.drive({100, 100});
    rig.frames(500);
    EXPECT_TRUE(rig.state.powered_off);
    EXPECT_EQ(rig.body.commanded(), WheelSpeeds{});
    EXPECT_TRUE(rig.happened("the battery is empty"));
}

}  // namespace
}  // namespace vemra::robot
