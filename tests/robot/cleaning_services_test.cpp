#include <gmock/gmock.h>

#include "robot/belief/localisation.h"
#include "robot/robot_rig.h"
#include "robot/services/cleaning/cleaning_log.h"
#include "robot/services/cleaning/cleaning_system.h"
#include "robot/services/cleaning/fittings.h"
#include "robot/services/maps/maps.h"
#include "robot/services/panel/commands.h"
#include "robot/services/panel/notices.h"
#include "robot/services/sensing/attitude.h"

namespace vemra::robot {
namespace {

using testing::DoubleNear;

// What a cleaning task asks of the robot beside its motion.
class CleaningRig : public RobotRig
{
public:
    CleaningRig() : RobotRig(sketch(room(80, 40)), {{1000, 1000}, {0}}) { install(); }
    ~CleaningRig() override { dropTrees(); }

    // A frame of a run that sets brushes, fan and water, and turns the cloth if there is one.
    void runOn(int count, bool on_carpet = false)
    {
        for (int i = 0; i < count; ++i) {
            frame();
            passes("RobotMopGearSet", {{"value", "34"}});
            passes("MoveCleanSysModeSet");
            if (on_carpet)
                passes("RobotMotorPressPlusSet");
        }
    }

    void fit(Fitting fitting, bool installed)
    {
        fittings.take(FittingChange{fitting, installed});
        if (fitting == Fitting::Mop && installed)
            blackboard->set("mop_mode", "true");  // as the trees note it
        else if (fitting == Fitting::Mop)
            blackboard->erase("mop_mode");
    }

    void setPowers(const char* brush)
    {
        passes("SetCleanSystem", {{"Brush", brush}, {"Fan", "1"}, {"Pump", "0"}, {"SideBrush", "1"}});
    }

    double dirt() const
    {
        double value = -1;
        blackboard->get("mop_dirty", value);
        return value;
    }

    Localisation pose{body};
    RobotMap map{body, pose};
    MapStore store;
    FittingService fittings{parts};
    CleaningSystemService system{parts};
    CleaningLogService log_of_clean{parts, map};
    AttitudeService attitude{parts};
    NoticeService notices{parts};
    CommandService commands{parts, ScenarioStart{}};
    MapService maps{parts, map, store, stored()};

private:
    static ScenarioStart stored()
    {
        ScenarioStart start;
        start.map.known = true;
        return start;
    }
    std::vector<Service*> services() override
    {
        return {&fittings, &system, &log_of_clean, &attitude, &notices, &commands, &maps};
    }
};

TEST(CleaningSystem, OfARunSweepsWhateverItBeganWith)
{
    CleaningRig rig;
    rig.setPowers("1");
    EXPECT_FALSE(rig.state.brushes_on);
    rig.runOn(2);
    EXPECT_TRUE(rig.state.brushes_on);
    EXPECT_TRUE(rig.state.fan_on);
    EXPECT_TRUE(rig.happened("Brush 60 Fan 55 Pump 0 SideBrush 35"));
    rig.runOn(2, true);
    EXPECT_TRUE(rig.happened("Brush 90 Fan 90 Pump 0 SideBrush 35"));
    rig.log.clear();
    rig.runOn(2);
    EXPECT_TRUE(rig.happened("Brush 60 Fan 55")) << "off the carpet";
    rig.setPowers("0");
    EXPECT_FALSE(rig.state.brushes_on);
}

TEST(CleaningSystem, WetsTheClothFromABoxThatIsNotShutAndWipesAloneWhereTheUserWantsIt)
{
    CleaningRig rig;
    rig.fit(Fitting::Mop, true);
    EXPECT_EQ(rig.text("robot_mop_mode"), "2");
    rig.runOn(2);
    EXPECT_TRUE(rig.happened("Brush 60 Fan 55 Pump 1 SideBrush 35"));
    rig.blackboard->set("close_water_box", "");
    rig.runOn(2);
    EXPECT_TRUE(rig.happened("Brush 60 Fan 55 Pump 0 SideBrush 35"));
    rig.blackboard->erase("close_water_box");
    rig.blackboard->set("robot_mop_mode", "1");
    rig.runOn(2);
    EXPECT_TRUE(rig.happened("Brush 1 Fan 1 Pump 1 SideBrush 1"));
    EXPECT_TRUE(rig.state.brushes_on) << "wiped floor counts";
    EXPECT_FALSE(rig.state.fan_on);

    rig.fit(Fitting::Mop, false);
    EXPECT_EQ(rig.text("robot_mop_mode"), "0");
    EXPECT_FALSE(rig.blackboard->get<bool>("use_mop"));
    rig.runOn(2);
    EXPECT_TRUE(rig.state.fan_on);
}

TEST(CleaningSystem, TheClothIsDirtyAfterTheFloorThatItTakes)
{
    CleaningRig rig;
    rig.body.drive({200, 200});
    rig.runOn(50);
    EXPECT_EQ(rig.dirt(), -1) << "without a cloth";
    rig.fit(Fitting::Mop, true);
    rig.body.drive({200, 200});
    rig.runOn(100);
    // 2 s at 200 mm/s are 0.08 m2 under the cloth, of 15 m2.
    EXPECT_THAT(rig.dirt(), DoubleNear(0.53, 0.03));
    rig.blackboard->set("wash_mop_mode", 1);
    rig.blackboard->set("mop_dirty", 0.0);
    rig.body.drive({-200, -200});
    rig.runOn(100);
    EXPECT_THAT(rig.dirt(), DoubleNear(8, 0.5));
    const double before = rig.dirt();
    rig.frames(50);
    EXPECT_THAT(rig.dirt() - before, testing::Lt(0.2)) << "not but beside a run";
}

TEST(CleaningLog, TellsWhatWasDoneAndHowFarForWhichReason)
{
    CleaningRig rig;
    rig.blackboard->set("clean_time_for_app", 90);
    rig.blackboard->set("task_state", "completing");
    rig.passes("GenerateCleaningLog", {{"clean_mode", ""}});
    EXPECT_FALSE(rig.happened("cleaning log"));
    rig.passes("GenerateCleaningLog", {{"clean_mode", "AutoCleanMode"}});
    EXPECT_TRUE(rig.happened("cleaning log: AutoCleanMode, 90 s, 0.0 m2, done"));
    rig.blackboard->set("task_state", "cleaning");
    rig.passes("GenerateCleaningLog", {{"clean_mode", "PartCleanMode"}});
    EXPECT_TRUE(rig.happened("PartCleanMode, 90 s, 0.0 m2, broken off"));

    rig.log.clear();
    rig.blackboard->set("CleanCompleteWithoutCleaningLog", "true");
    rig.passes("GenerateCleaningLog", {{"clean_mode", "AutoCleanMode"}});
    EXPECT_FALSE(rig.blackboard->contains("CleanCompleteWithoutCleaningLog")) << "for one task";
    rig.blackboard->set("MockCleaningLog", "true");
    rig.passes("GenerateCleaningLog", {{"clean_mode", "AutoCleanMode"}});
    EXPECT_FALSE(rig.happened("cleaning log"));
}

TEST(Attitude, ADriftOffTheDockIsToldWhereItIsChecked)
{
    CleaningRig rig;
    EXPECT_FALSE(rig.passes("DoesInitialIMUPoseDriftEnable"));
    rig.blackboard->set("imu_drift_check", "true");
    EXPECT_TRUE(rig.passes("DoesInitialIMUPoseDriftEnable"));
    rig.passes("GetIMUPose", {{"storage", "IMU_POSE_Oncharger"}});
    rig.body.setOdometry({{0, 0}, {3}});
    rig.passes("GetIMUPose", {{"storage", "IMU_POSE_Oncharger_BackEnd"}});
    rig.blackboard->set("IMUInitDriftEvent", "");
    rig.frame();
    EXPECT_TRUE(rig.happened("heading drifted by 3.0 degrees"));
    EXPECT_FALSE(rig.blackboard->contains("IMUInitDriftEvent"));
}

TEST(Attitude, AFloorThatIsOutOfLevelOverTheFirstTurnIsTold)
{
    CleaningRig rig;
    const auto turn = [&rig](double degrees) {
        rig.passes("InitRollPitchCheck");
        rig.body.tilt(degrees, 1000);
        rig.passes("RollPitchMinMaxUpdate");
        rig.body.tilt(0, 0);
        rig.passes("GetIMUPose", {{"storage", "IMU_POSE_TurnEnd"}});
        return rig.happened("out of level");
    };
    EXPECT_FALSE(turn(1));
    EXPECT_TRUE(turn(5));
}

TEST(Notices, AreToldOnceAndTakenAway)
{
    CleaningRig rig;
    rig.blackboard->set("close_door_trapped", "");
    rig.blackboard->set("a_b_dist", 420.0);
    rig.blackboard->set("need_infrared_calibration", "true");
    rig.frame();
    EXPECT_TRUE(rig.happened("trapped: a door was closed"));
    EXPECT_FALSE(rig.happened("receivers calibrated")) << "under way";
    rig.blackboard->set("infrared_calibration_finished", "");
    rig.frame();
    EXPECT_TRUE(rig.happened("receivers calibrated over 420 mm"));
    rig.log.clear();
    rig.blackboard->set("infrared_calibration_finished", "");
    rig.frames(3);
    EXPECT_TRUE(rig.log.empty()) << "not calibrated, nothing to tell";
}

TEST(TimedOrder, BeginsTheModeItNamesOnceAndNotOneThatRuns)
{
    CleaningRig rig;
    const auto order = [&rig](Mode mode, bool timed) {
        AppCommand command;
        command.mode = mode;
        command.timed_order = timed;
        rig.commands.take(command);
        rig.frame();
        rig.enterLeaf("DoesReceiveWIFICMD");
        rig.tree.root_node->executeTick();
        rig.tree = {};
    };
    const auto began = [&rig] { return rig.passes("DoesExcuteOrderAutoMode"); };
    rig.state.modes.request(Mode::Charging);
    order(Mode::AutoClean, true);
    EXPECT_FALSE(began()) << "not entered yet";
    rig.state.modes.request(Mode::AutoClean);
    rig.state.modes.update(false);
    EXPECT_TRUE(began());
    EXPECT_FALSE(began());
    order(Mode::AutoClean, true);
    EXPECT_FALSE(began()) << "it ran already";

    rig.state.modes.request(Mode::Standby);
    rig.state.modes.update(false);
    order(Mode::AutoClean, true);
    order(Mode::AutoClean, false);
    rig.state.modes.request(Mode::AutoClean);
    rig.state.modes.update(false);
    EXPECT_FALSE(began()) << "a person was last to ask";
}

TEST(StoredMap, KeepsWhatTheUserForbade)
{
    CleaningRig rig;
    const auto areas = [&rig] { return rig.map.virtualWalls().areas.size(); };
    rig.blackboard->set("virtual_wall_rects", std::vector<double>{1500, 500, 2500, 1500});
    ASSERT_TRUE(rig.passes("SetVirtualWallFromReuse"));
    EXPECT_EQ(areas(), 1U);
    rig.blackboard->erase("virtual_wall_rects");
    ASSERT_TRUE(rig.passes("SetVirtualWallFromReuse"));
    EXPECT_EQ(areas(), 1U) << "off the stored map";
    EXPECT_TRUE(rig.blackboard->contains("virtual_wall_rects"));

    // The app's list is the newer one, even where it is empty.
    rig.blackboard->set("virtual_wall_rects", std::vector<double>{});
    ASSERT_TRUE(rig.passes("SetVirtualWallFromReuse"));
    EXPECT_EQ(areas(), 0U);
    rig.blackboard->erase("virtual_wall_rects");
    ASSERT_TRUE(rig.passes("SetVirtualWallFromReuse"));
    EXPECT_EQ(areas(), 0U);

    // What may not be mopped is forbidden to a cloth alone.
    rig.blackboard->set("virtual_wall_mop_rects", std::vector<double>{1500, 500, 2500, 1500});
    ASSERT_TRUE(rig.passes("SetVirtualWallFromReuse"));
    EXPECT_EQ(areas(), 0U);
    rig.fit(Fitting::Mop, true);
    ASSERT_TRUE(rig.passes("SetVirtualWallFromReuse"));
    EXPECT_EQ(areas(), 1U);
}

}  // namespace
}  // namespace vemra::robot
