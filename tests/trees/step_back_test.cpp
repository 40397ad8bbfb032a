#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

/// The bumper is pressed in these frames, inclusive.
Answer::Function pressedIn(const std::vector<std::pair<int, int>>& frames, const std::string& direction)
{
    return [frames, direction](const Moment& now) {
        for (const auto& [first, last] : frames)
            if (first <= now.frame && now.frame <= last) {
                if (!now.port("out_bump_dir").empty())
                    now.set(now.port("out_bump_dir"), direction);
                return SUCCESS;
            }
        return FAILURE;
    };
}

TEST(StepBack, GoesOnUntilTheBumperIsFreeAndFiveFramesMore)
{
    ScriptedRobot robot;
    robot.set("bump_dir", "Left");
    robot.leaf("BumpdirMerge").decides([](const Moment& now) {
        if (now.port("bumpdir1") != now.port("bumpdir2"))
            now.set(now.port("out_bumpdir"), "Middle");
        return SUCCESS;
    });
    robot.leaf("SensorCheckBumped").decides(pressedIn({{1, 12}}, "Left"));
    robot.start("BTBack2cm");
    EXPECT_EQ(robot.finish(60), SUCCESS);
    const int first = robot.firstFrameOf("GoBackwards").value();
    EXPECT_EQ(robot.framesOf("GoBackwards"), 12 - first + 1 + 5);
    EXPECT_EQ(robot.key("bump_dir"), "Left");
    EXPECT_TRUE(robot.inOrder("Stop | SetMapDrawMode draw_mode=BlockOnly | GoBackwards | Stop"));

    // Another touch, and the five frames are counted afresh.
    const int start = robot.frame() + 1;
    robot.leaf("SensorCheckBumped")
        .decides(pressedIn({{start, start + 8}, {start + 12, start + 12}}, "Right"));
    robot.start("BTBack2cm");
    EXPECT_EQ(robot.finish(60), SUCCESS);
    const int again = robot.firstFrameOf("GoBackwards").value();
    EXPECT_EQ(robot.framesOf("GoBackwards"), start + 12 - again + 1 + 5);
    EXPECT_EQ(robot.key("bump_dir"), "Middle") << "all of the collision";
}

TEST(BlindAdvance, ThatBumpsGivesTheWholeRunUpAndWaitsBehindItsStepBack)
{
    ScriptedRobot robot;
    robot.tree("Back2cm").succeedsAfter(3);
    robot.leaf("SensorCheckBumped").decides(pressedIn({{30, 30}}, "Left"));
    robot.start("BlindAdvance");
    EXPECT_EQ(robot.tick(30), RUNNING);
    EXPECT_EQ(robot.key("bump_dir"), "Left");
    EXPECT_TRUE(robot.halted("OpenCloseMove"));
    const int driven = robot.framesOf("OpenCloseMove");
    EXPECT_EQ(robot.tick(3 + 19), RUNNING);
    EXPECT_EQ(robot.finish(3), SUCCESS);
    EXPECT_EQ(robot.framesOf("OpenCloseMove"), driven);
}

TEST(ShakeAndBack, StopsAfterTenCentimetresAndTurnsOnlyBeforeADock)
{
    ScriptedRobot robot;
    robot.pointsOnALine();
    robot.set("current_pose", 0);
    robot.leaf("GoBackwards").decides([](const Moment& now) {
        now.set("current_pose", now.keys.get<int>("current_pose") - 4);
        return RUNNING;
    });
    robot.start("ShakeAndBack");
    EXPECT_EQ(robot.finish(300), SUCCESS);
    EXPECT_EQ(robot.key("current_pose"), "-100");
    EXPECT_TRUE(robot.notAsked("Rotate"));

    robot.leaf("InDockField").succeeds();
    robot.set("current_pose", 0);
    robot.forget();
    EXPECT_EQ(robot.finish(600), SUCCESS);
    EXPECT_TRUE(robot.inOrder(
        "Rotate angle_deg=-180 | OpenCloseMove left_mm_s=120 right_mm_s=120 | Rotate angle_deg=180"));
    EXPECT_EQ(robot.framesOf("OpenCloseMove"), 150);
}

}  // namespace
}  // namespace vemra::test
