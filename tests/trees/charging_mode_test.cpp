#include "trees/resting_mode.h"

namespace vemra::test {
namespace {

using testing::Contains;
using testing::IsEmpty;

using ChargingMode = RestingMode;

TEST_F(ChargingMode, ResumesATaskOnceThereIsPowerForIt)
{
    const std::vector<std::pair<std::string, std::string>> resumed = {
        {"lowpower", "AutoCleanMode"},
        {"zone_lowpower", "DrawAreaCleanMode"},
        {"area_lowpower", "SelectAreaCleanMode"},
        {"point_lowpower", "SelectPointCleanMode"},
    };
    robot.on_charger = true;
    robot.leaf("DoesRobotBreakPointEnable").succeeds();
    robot.leaf("BreakPointElecCalculate").writes("Elec_BreakPoint", 60);
    for (const auto& [state, mode] : resumed) {
        robot.set("task_state", state);
        robot.battery = 59;
        enter("ChargingMode", "StopChargingIndex", 30);
        EXPECT_THAT(robot.requests(), IsEmpty()) << state;
        robot.battery = 60;
        robot.tick();
        EXPECT_THAT(robot.requests(), Contains(mode));
        robot.battery = 59;
        enter("SleepMode", "SleepModeDealIndex", 30);
        EXPECT_THAT(robot.requests(), IsEmpty()) << state;
        robot.battery = 60;
        robot.tick();
        EXPECT_THAT(robot.requests(), Contains(mode)) << "out of its sleep";
    }
    robot.quiet_hours = true;
    enter("ChargingMode", "StopChargingIndex", 30);
    EXPECT_THAT(robot.requests(), IsEmpty()) << "not in quiet hours";
    robot.quiet_hours = false;
    robot.leaf("IsError_Box").succeeds();
    robot.tick(30);
    EXPECT_THAT(robot.requests(), IsEmpty()) << "not without a dust box";
    robot.leaf("IsError_Box").fails();
    robot.set("mop_is_dirty", "");
    robot.tick(30);
    EXPECT_THAT(robot.requests(), IsEmpty()) << "not with a dirty mop";
    robot.erase("mop_is_dirty");
    robot.tick(2);
    EXPECT_THAT(robot.requests(), Contains("SelectPointCleanMode"));
}

TEST_F(ChargingMode, ClosesATaskThatMayNotBeResumed)
{
    robot.on_charger = true;
    robot.set("task_state=area_lowpower task_type=AreaClean");
    enter("ChargingMode", "StopChargingIndex", 30);
    EXPECT_TRUE(robot.started(1, "AdvCleanComplete"));
    EXPECT_TRUE(robot.keysAre("task_state=init task_type=Idle"));
    EXPECT_THAT(robot.requests(), IsEmpty()) << "and stays on the dock";

    robot.leaf("DoesRobotBreakPointEnable").succeeds();
    robot.leaf("BreakPointElecCalculate").writes("Elec_BreakPoint", 100);
    for (const std::string state : {"lowpower", "zone_lowpower", "area_lowpower", "point_lowpower"}) {
        robot.set("task_state", state + "_pause");
        robot.set("breakpoint_getcharger moved_during_pause=false");
        enter("ChargingMode", "StopChargingIndex", 30);
        EXPECT_EQ(robot.key("task_state"), state) << "it may go on";
    }
    robot.set("task_state=area_lowpower_pause moved_during_pause=true");
    enter("ChargingMode", "StopChargingIndex", 30);
    EXPECT_TRUE(robot.asked("AdvCleanComplete")) << "it was carried about";
}

TEST_F(ChargingMode, KnockedOffTheDockGoesHomeByItself)
{
    robot.set("IMU_Changed", "false");
    robot.on_charger = true;
    enter("ChargingMode", "StopChargingIndex", 30);
    robot.leaf("DoesIMUDetectMoveLast2S").succeeds();
    robot.tick(2);
    robot.on_charger = false;
    robot.tick(249);
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.tick(5);
    EXPECT_THAT(robot.requests(), Contains("BackHomeMode"));
    EXPECT_EQ(robot.key("kicked"), "true");

    robot.leaf("DoesIMUDetectMoveLast2S").fails();
    robot.on_charger = true;
    enter("ChargingMode", "StopChargingIndex", 30);
    robot.on_charger = false;
    robot.tick(254);
    EXPECT_THAT(robot.requests(), Contains("StandbyMode")) << "nothing felt, no signal";

    robot.on_charger = true;
    enter("ChargingMode", "StopChargingIndex", 30);
    robot.on_charger = false;
    robot.leaf("DoesWheelsDrop").succeeds();
    robot.tick(3);
    EXPECT_THAT(robot.requests(), Contains("StandbyMode")) << "lifted off by somebody";
}

TEST_F(ChargingMode, GoesBackToTheWorkThatTheStationInterrupted)
{
    robot.on_charger = true;
    for (const auto& [type, mode] :
         std::vector<std::pair<std::string, std::string>>{{"AutoClean", "AutoCleanMode"},
                                                          {"ZoneClean", "DrawAreaCleanMode"},
                                                          {"AreaClean", "SelectAreaCleanMode"},
                                                          {"PointClean", "SelectPointCleanMode"}}) {
        robot.set("need_back_station", "");
        robot.set("task_type", type);
        robot.set("task_state=cleaning LastRobotMode=14");
        enter("ChargingMode", "StopChargingIndex", 50);
        EXPECT_THAT(robot.requests(), IsEmpty()) << type;
        robot.tick(70);
        EXPECT_THAT(robot.requests(), Contains(mode));
        EXPECT_EQ(robot.key("continue_work"), "clean_none");
    }
}

}  // namespace
}  // namespace vemra::test
