#include "robot/belief/localisation.h"
#include "robot/robot_rig.h"
#include "robot/services/cleaning/cleaning_log.h"
#include "robot/services/cleaning/cleaning_system.h"
#include "robot/services/cleaning/fittings.h"
#include "robot/services/maps/maps.h"
#include "robot/services/panel/notices.h"
#include "robot/services/power/power.h"
#include "robot/services/sensing/attitude.h"

namespace vemra::robot {
namespace {

// What a cleaning task asks of the robot beside its motion.
class CleaningRig : public RobotRig
{
public:
    CleaningRig() : RobotRig(sketch(room(80, 40)), {{1000, 1000}, {0}})
    {
        install({&fittings, &system, &log_of_clean, &attitude, &notices, &maps, &power});
    }
    ~CleaningRig() override { dropTrees(); }

    // A frame of a run that sets brushes, fan and water, and turns the cloth if there is one.
    void runOn(int count, bool on_carpet = false)
    {
        for (int i = 0; i < count; ++i) {
            frame();
            passes("RobotMopGearSet value=34");
            passes("MoveCleanSysModeSet");
            if (on_carpet)
                passes("RobotMotorPressPlusSet");
        }
    }

    void fit(Fitting fitting, bool installed)
    {
        fittings.take(FittingChange{fitting, installed});
        if (fitting == Fitting::Mop)
            set(installed ? "mop_mode=true" : "-mop_mode");  // as the trees note it
    }

    void setPowers(const std::string& brush)
    {
        passes("SetCleanSystem Brush=" + brush + " Fan=1 Pump=0 SideBrush=1");
    }

    bool isAbove(const std::string& percent)
    {
        return passes("RobotPowerGetHigherThan capability=" + percent);
    }
    double usedIn(int count)
    {
        const double before = state.battery_percent;
        frames(count);
        return before - state.battery_percent;
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
    MapService maps{parts, map, store, stored()};
    PowerService power{parts, ScenarioStart{}};

private:
    static ScenarioStart stored()
    {
        ScenarioStart start;
        start.map.known = true;
        return start;
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
    rig.set("close_water_box");
    rig.runOn(2);
    EXPECT_TRUE(rig.happened("Brush 60 Fan 55 Pump 0 SideBrush 35"));
    rig.set("-close_water_box robot_mop_mode=1");
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
    rig.set("wash_mop_mode=1 mop_dirty=0.0");
    rig.body.drive({-200, -200});
    rig.runOn(100);
    EXPECT_THAT(rig.dirt(), DoubleNear(8, 0.5));
    const double before = rig.dirt();
    rig.frames(50);
    EXPECT_THAT(rig.dirt() - before, Lt(0.2)) << "not but beside a run";
}

TEST(CleaningLog, TellsWhatWasDoneAndHowFarForWhichReason)
{
    CleaningRig rig;
    rig.set("clean_time_for_app=90 task_state=completing");
    rig.passes("GenerateCleaningLog clean_mode=");
    EXPECT_FALSE(rig.happened("cleaning log"));
    rig.passes("GenerateCleaningLog clean_mode=AutoCleanMode");
    EXPECT_TRUE(rig.happened("cleaning log: AutoCleanMode, 90 s, 0.0 m2, done"));
    rig.set("task_state=cleaning");
    rig.passes("GenerateCleaningLog clean_mode=PartCleanMode");
    EXPECT_TRUE(rig.happened("PartCleanMode, 90 s, 0.0 m2, broken off"));

    rig.log.clear();
    rig.set("CleanCompleteWithoutCleaningLog=true");
    rig.passes("GenerateCleaningLog clean_mode=AutoCleanMode");
    EXPECT_TRUE(rig.keysAre("-CleanCompleteWithoutCleaningLog")) << "for one task";
    rig.set("MockCleaningLog=true");
    rig.passes("GenerateCleaningLog clean_mode=AutoCleanMode");
    EXPECT_FALSE(rig.happened("cleaning log"));
}

TEST(Attitude, ADriftOffTheDockIsToldWhereItIsChecked)
{
    CleaningRig rig;
    EXPECT_FALSE(rig.passes("DoesInitialIMUPoseDriftEnable"));
    rig.blackboard->set("imu_drift_check", "true");
    EXPECT_TRUE(rig.passes("DoesInitialIMUPoseDriftEnable"));
    rig.passes("GetIMUPose storage=IMU_POSE_Oncharger");
    rig.body.setOdometry({{0, 0}, {3}});
    rig.passes("GetIMUPose storage=IMU_POSE_Oncharger_BackEnd");
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
        rig.passes("GetIMUPose storage=IMU_POSE_TurnEnd");
        return rig.happened("out of level");
    };
    EXPECT_FALSE(turn(1));
    EXPECT_TRUE(turn(5));
}

TEST(Notices, AreToldOnceAndTakenAway)
{
    CleaningRig rig;
    rig.set("close_door_trapped a_b_dist=420.0 need_infrared_calibration=true");
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

TEST(StoredMap, KeepsWhatTheUserForbade)
{
    CleaningRig rig;
    const auto areas = [&rig] { return rig.map.virtualWalls().areas.size(); };
    const auto setFrom = [&rig, &areas](const char* key, const std::optional<std::vector<double>>& box) {
        if (box)
            rig.blackboard->set(key, *box);
        else
            rig.blackboard->erase(key);
        EXPECT_TRUE(rig.passes("SetVirtualWallFromReuse"));
        return areas();
    };
    const std::vector<double> box{1500, 500, 2500, 1500};
    EXPECT_EQ(setFrom("virtual_wall_rects", box), 1U);
    EXPECT_EQ(setFrom("virtual_wall_rects", {}), 1U) << "off the stored map";
    EXPECT_TRUE(rig.keysAre("virtual_wall_rects"));
    // The app's list is the newer one, even where it is empty.
    EXPECT_EQ(setFrom("virtual_wall_rects", std::vector<double>{}), 0U);
    EXPECT_EQ(setFrom("virtual_wall_rects", {}), 0U);
    // What may not be mopped is forbidden to a cloth alone.
    EXPECT_EQ(setFrom("virtual_wall_mop_rects", box), 0U);
    rig.fit(Fitting::Mop, true);
    EXPECT_EQ(setFrom("virtual_wall_mop_rects", box), 1U);
}

TEST(Power, IsAboveALimitOnlyBeyondItButAFullBatteryIsFull)
{
    CleaningRig rig;
    for (const auto& [percent, limit, above] : {std::tuple{16.0, "16", false},
                                                {16.0, "15", true},
                                                {16.01, "16", true},
                                                {100.0, "100", true},
                                                {99.9, "100", false}}) {
        rig.state.battery_percent = percent;
        EXPECT_EQ(rig.isAbove(limit), above) << percent << ' ' << limit;
    }
}

TEST(Power, DrainsByWhatRunsAndStopsTheRobotInTheEnd)
{
    CleaningRig rig;
    rig.state.battery_percent = 50;
    const double at_rest = rig.usedIn(500);
    EXPECT_THAT(at_rest, Gt(0));
    rig.state.brushes_on = true;
    rig.state.fan_on = true;
    const double cleaning = rig.usedIn(500);
    EXPECT_THAT(cleaning, Gt(3 * at_rest));
    rig.body.drive({300, 300});
    EXPECT_THAT(rig.usedIn(100) * 5, Gt(1.1 * cleaning));
    rig.state.battery_percent = 0.001;
    rig.frames(50);
    EXPECT_TRUE(rig.state.powered_off);
    EXPECT_EQ(rig.body.commanded(), WheelSpeeds{});
    EXPECT_TRUE(rig.happened("the battery is empty"));

    CleaningRig docked;
    docked.state.battery_percent = 50;
    docked.state.contacts.update(true);
    EXPECT_THAT(docked.usedIn(500), Lt(0));
}

TEST(Maps, ATaskStartsWithoutThePartsOfTheLastOne)
{
    CleaningRig rig;
    rig.set("subregion_fixed=7 subregion_offset_grid=7 subregion_offset_x_fix=7 mop_dirty=7");
    rig.set("subregion_offset_y_fix=7 clean_time_for_app=7");
    ASSERT_TRUE(rig.passes("PresetBlackboard"));
    EXPECT_TRUE(rig.keysAre("-subregion_fixed -subregion_offset_grid -subregion_offset_x_fix -mop_dirty"));
    EXPECT_TRUE(rig.keysAre("-subregion_offset_y_fix clean_time_for_app=0"));
    EXPECT_TRUE(rig.keysAre("map_id_with_order")) << "the map's keys stay";
}

}  // namespace
}  // namespace vemra::robot
