#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

/// A bump that stands until its deal has worked.
void bumpUntilDealtWith(ScriptedRobot& robot, int from)
{
    const auto stands = [from](const Moment& now) {
        return now.frame >= from && !now.keys.contains("dealt");
    };
    robot.leaf("IsEscapeCheckWarning").provided(stands).succeeds();
    robot.leaf("IsBumpWarning").provided(stands).succeeds();
    robot.leaf("EscapeBumpDeal").succeedsAfter(10).writes("dealt", true);
    robot.set("current_tick_cnt", 100);
}

TEST(EscapeFromATrap, HaltsTheDriveAndIsToldToItExactlyOnce)
{
    ScriptedRobot robot;
    bumpUntilDealtWith(robot, 5);
    robot.leaf("NaviOnePoint").runs();
    robot.startGuarded({"EscapeCoat", "NaviOnePointProc"});

    EXPECT_EQ(robot.tick(5), RUNNING);
    EXPECT_TRUE(robot.halted("NaviOnePoint"));
    EXPECT_EQ(robot.framesOf("NaviOnePoint"), 4);
    EXPECT_TRUE(robot.halted("TemporarilyDisableSensor sensor=DockField"));
    EXPECT_TRUE(robot.keysAre("trapped=true not_trace_token=Escape"));

    EXPECT_EQ(robot.finish(20), FAILURE) << "the task begins anew after an escape";
    EXPECT_EQ(robot.framesOf("EscapeBumpDeal"), 11);
    EXPECT_TRUE(robot.inOrder("EscapeInitDeal | EscapeBumpDeal | EscapeEndDeal"));
    EXPECT_EQ(robot.framesOf("NaviOnePoint"), 4);

    robot.forget();
    robot.leaf("SensorCheckBumped").succeeds().fills("out_bump_dir", "Left");
    EXPECT_EQ(robot.tick(), FAILURE) << "the drive is told";
    EXPECT_EQ(robot.key("bump_dir"), "Left");
    EXPECT_TRUE(robot.notAsked("NaviOnePoint"));

    EXPECT_EQ(robot.tick(30), RUNNING) << "and is not told again";
    EXPECT_EQ(robot.framesOf("NaviOnePoint"), 30);
    EXPECT_EQ(robot.key("trapped"), "false");
}

TEST(EscapeFromATrap, HasAWayOutForEachWarningTheMostUrgentFirst)
{
    const std::vector<std::pair<std::string, std::string>> ladder = {
        {"IsCliffWarning", "EscapeCliffDeal"},
        {"IsDropWarning", "EscapeDropDeal"},
        {"IsVirtualWarning", "EscapeVirtualDeal"},
        {"IsBumpWarning", "EscapeBumpDeal"},
        {"is_immovable_warning", "immovable_motion"},
        {"IsLeftWheelCurrentWarning", "EscapeLeftWheelCurrentDeal"},
        {"IsRightWheelCurrentWarning", "EscapeRightWheelCurrentDeal"},
        {"IsBrushCurrentWarning", "EscapeBrushCurrentDeal"},
        {"IsSideCurrentWarning", "EscapeSideCurrentDeal"},
        {"IsGestureWarning", "EscapeGestureDeal"},
        {"IsBumpRepeatWarning", "EscapeBumpRepeatDeal"},
        {"IsDropRepeatWarning", "EscapeDropRepeatDeal"},
        {"IsTurnSuffocateWarning", "EscapeTurnSuffocateDeal"},
        {"IsForwardSuffocateWarning", "EscapeForwardSuffocateDeal"},
        {"IsLDSBumpWarning", "EscapeLDSBumpDeal"},
    };
    ScriptedRobot robot;
    robot.set("current_tick_cnt", 7);
    robot.leaf("IsEscapeCheckWarning").succeeds();
    robot.start("EscapeCoat");
    for (auto rung = ladder.rbegin(); rung != ladder.rend(); ++rung) {
        robot.leaf(rung->first).succeeds();  // and those below it hold as well
        for (const bool on_bridge : {false, true}) {
            if (on_bridge)
                robot.set("cross_bridge_trap_times", 0);
            else
                robot.erase("cross_bridge_trap_times");
            robot.forget();
            EXPECT_EQ(robot.finish(3), FAILURE);
            for (const auto& [warning, way_out] : ladder)
                EXPECT_EQ(robot.framesOf(way_out), way_out == rung->second ? 1 : 0)
                    << warning << " while " << rung->first;
            robot.leaf(rung->second).fails();
            EXPECT_EQ(robot.finish(3), SUCCESS) << rung->second;
            robot.leaf(rung->second).succeeds();
        }
    }
}

TEST(EscapeFromATrap, IsRefusedAtTheFifthCountOfABridge)
{
    ScriptedRobot robot;
    robot.set("current_tick_cnt", 7);
    robot.succeed("IsEscapeCheckWarning | IsBumpWarning");
    robot.set("cross_bridge_trap_times", 4);
    EXPECT_EQ(robot.finish("EscapeCoat", 5), FAILURE);
    EXPECT_TRUE(robot.started(1, "EscapeBumpDeal"));
    EXPECT_FALSE(robot.has("traped_when_crossing"));

    robot.set("cross_bridge_trap_times=5 -finish_escape");
    robot.forget();
    EXPECT_EQ(robot.finish(5), FAILURE);
    EXPECT_TRUE(robot.notAsked("EscapeInitDeal | EscapeBumpDeal"));
    EXPECT_TRUE(robot.keysAre("traped_when_crossing -finish_escape"));
}

TEST(FlagOfAnEscape, NobodyAskedForIsDroppedAtADifferenceOfThreeTicks)
{
    const char* const complaint = "脱困异常情况：某个动作发生时触发脱困，但该处动作未调用Escape.xml";
    ScriptedRobot robot;
    robot.set("finish_escape=true origin_tick_cnt=100");
    robot.start("EscapeCoat");
    for (int tick = 100; tick <= 102; ++tick) {
        robot.set("current_tick_cnt", tick);
        robot.forget();
        EXPECT_EQ(robot.tick(), SUCCESS);
        EXPECT_TRUE(robot.said(complaint)) << "at tick " << tick;
        EXPECT_TRUE(robot.has("finish_escape")) << "at tick " << tick;
    }
    robot.set("current_tick_cnt", 103);
    EXPECT_EQ(robot.tick(), SUCCESS);
    EXPECT_TRUE(robot.keysAre("-finish_escape -origin_tick_cnt"));

    robot.forget();
    robot.set("finish_escape", "true");
    EXPECT_EQ(robot.tick(), SUCCESS);
    EXPECT_FALSE(robot.has("finish_escape")) << "of unknown age";
    EXPECT_TRUE(robot.notSaid(complaint));
}

TEST(Trap, IsReportedOnceATask)
{
    ScriptedRobot robot;
    robot.pointsOnALine();
    robot.leaf("PromptInVirtualWall").succeeds();
    robot.set("task_state=auto_cleaning clean_start_vw_check");
    EXPECT_EQ(robot.run("CheckInVirtualWall", 500), RUNNING) << "whoever tells the user has time for it";
    EXPECT_EQ(robot.finish(10), SUCCESS);
    EXPECT_TRUE(robot.keysAre("start_vw_trapped=true have_trapped_type SFC_trapped -clean_start_vw_check"));

    EXPECT_EQ(robot.tick(), SUCCESS) << "a second trap of another kind";
    EXPECT_FALSE(robot.has("polygon_vw_trapped"));

    robot.erase("have_trapped_type");
    EXPECT_EQ(robot.finish(510), SUCCESS) << "the next task";
    EXPECT_EQ(robot.key("polygon_vw_trapped"), "true");
}

TEST(Trap, IsNoneWhereTheRobotWalksOutOrCleansASpot)
{
    ScriptedRobot robot;
    robot.pointsOnALine();
    robot.set("task_state=auto_cleaning current_pose=0");
    robot.leaf("PromptInVirtualWall").fails().provided([](const Moment& now) {
        now.set("out_vw_point", 400);
        return true;
    });
    robot.leaf("NaviOnePoint").succeedsAfter(5);
    EXPECT_EQ(robot.finish("CheckInVirtualWall", 20), SUCCESS);
    EXPECT_TRUE(robot.asked("NaviOnePoint target_point=400"));
    EXPECT_TRUE(robot.halted("TemporarilyDisableSensor sensor=PolygonVirtualWall"));
    EXPECT_FALSE(robot.has("out_vw_point"));

    robot.forget();
    robot.leaf("PromptInVirtualWall").succeeds();
    robot.set("task_state", "part_cleaning");
    EXPECT_EQ(robot.finish(600), SUCCESS);
    EXPECT_TRUE(robot.notAsked("PromptInVirtualWall"));
    EXPECT_FALSE(robot.has("have_trapped_type"));
}

}  // namespace
}  // namespace vemra::test
