#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

/// The bumper is pressed in these frames, inclusive.
Answer::Function pressedIn(std::vector<std::pair<int, int>> frames, const std::string& direction)
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
    robot.leaf("SensorCheckBumped").decides(pressedIn({{1, 12}}, "Left"));
    robot.start("BTBack2cm");
    EXPECT_EQ(robot.finish(60), SUCCESS);
    const int first = robot.firstFrameOf("GoBackwards").value();
    EXPECT_EQ(robot.framesOf("GoBackwards"), 12 - first + 1 + 5);
    EXPECT_TRUE(robot.inOrder(
        {{"Stop", {}}, {"SetMapDrawMode", {{"draw_mode", "BlockOnly"}}}, {"GoBackwards", {}}, {"Stop", {}}}));
}

TEST(StepBack, CountsTheFiveFramesAfreshAfterAnotherTouch)
{
    ScriptedRobot robot;
    robot.set("bump_dir", "Left");
    robot.leaf("SensorCheckBumped").decides(pressedIn({{1, 9}, {13, 13}}, "Right"));
    robot.leaf("BumpdirMerge").decides([](const Moment& now) {
        if (now.port("bumpdir1") != now.port("bumpdir2"))
            now.set(now.port("out_bumpdir"), "Middle");
        return SUCCESS;
    });
    robot.start("BTBack2cm");
    EXPECT_EQ(robot.finish(60), SUCCESS);
    EXPECT_EQ(robot.transcript().lastFrame("GoBackwards", {}), 13 + 5);
    EXPECT_EQ(robot.key("bump_dir"), "Middle") << "all of the collision";
}

TEST(StepBack, WithNothingPressedOnlyStops)
{
    ScriptedRobot robot;
    robot.start("BTBack2cm");
    EXPECT_EQ(robot.finish(10), SUCCESS);
    EXPECT_TRUE(robot.started(1, "Stop"));
    EXPECT_TRUE(robot.asked("SetMapDrawMode", {{"draw_mode", "BlockOnly"}}));
    EXPECT_TRUE(robot.notAsked("GoBackwards"));
}

TEST(StepBack, AfterAnEscapeIsNotMade)
{
    ScriptedRobot robot;
    robot.set("finish_escape", "true");
    robot.start("Back2cm");
    EXPECT_EQ(robot.finish(10), FAILURE);
    EXPECT_TRUE(robot.notAsked("Stop"));
    EXPECT_EQ(robot.finish(10), SUCCESS);
    EXPECT_TRUE(robot.asked("Stop"));
}

/// Millimetres driven straight on, out of the frames and their speeds.
double distanceMm(const ScriptedRobot& robot)
{
    double sum = 0;
    for (const Asking& asking : robot.transcript().askings())
        if (asking.who == "OpenCloseMove") {
            EXPECT_EQ(asking.ports.at("left_mm_s"), asking.ports.at("right_mm_s"));
            sum +=
                (asking.last_frame - asking.first_frame + 1) * std::stod(asking.ports.at("left_mm_s")) / 50;
        }
    return sum;
}

TEST(BlindAdvance, RunsSixtyCentimetresAndTheDoubleTwiceAsFar)
{
    ScriptedRobot robot;
    robot.start("BlindAdvance");
    EXPECT_EQ(robot.finish(300), SUCCESS);
    EXPECT_DOUBLE_EQ(distanceMm(robot), 600);
    EXPECT_TRUE(robot.asked("OpenCloseMove", {{"left_mm_s", "300"}}));
    robot.start("BlindAdvanceDouble");
    EXPECT_EQ(robot.finish(400), SUCCESS);
    EXPECT_DOUBLE_EQ(distanceMm(robot), 1200);
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

    robot.tree("Back2cm").fails();
    robot.leaf("SensorCheckBumped").succeeds();
    EXPECT_EQ(robot.finish(50), FAILURE) << "the step back decides";
}

TEST(TurnOntoTheLine, ThatBumpsForgetsTheLinesToClean)
{
    ScriptedRobot robot;
    robot.set("fix_orientation_target_point", 100);
    robot.set("next_line_to_clean_stack", "three lines");
    robot.tree("Back2cm").succeeds();
    robot.leaf("FixOrientationNode").succeedsAfter(20);
    robot.start("FixOrientation");
    robot.tick(5);
    EXPECT_TRUE(robot.has("next_line_to_clean_stack"));
    robot.leaf("CheckClifBump").succeeds().fills("out_bump_dir", "Right");
    EXPECT_EQ(robot.tick(), FAILURE);
    EXPECT_TRUE(robot.halted("FixOrientationNode"));
    EXPECT_TRUE(robot.asked("Back2cm"));
    EXPECT_FALSE(robot.has("next_line_to_clean_stack"));
    EXPECT_EQ(robot.key("bump_dir"), "Right");
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
    EXPECT_TRUE(robot.inOrder({{"Rotate", {{"angle_deg", "-180"}}},
                               {"OpenCloseMove", {{"left_mm_s", "120"}, {"right_mm_s", "120"}}},
                               {"Rotate", {{"angle_deg", "180"}}}}));
    EXPECT_EQ(robot.framesOf("OpenCloseMove"), 150);
}

}  // namespace
}  // namespace vemra::test
