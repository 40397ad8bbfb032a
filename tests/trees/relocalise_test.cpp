#include "trees/relocalising_robot.h"

namespace vemra::test {
namespace {

struct Relocalising : testing::Test
{
    Relocalising() { robot.begin(); }

    // The first turn is over, and the robot has gone to look from a place.
    void lookFrom(int place)
    {
        robot.sayEnough();
        robot.tickUntil("RelocMap reloc_state=start", 10);
        robot.sendTo(place);
        ASSERT_TRUE(robot.tells("reach_reloc"));
        EXPECT_EQ(robot.key("current_pose"), std::to_string(place));
        robot.tick(3);
        EXPECT_TRUE(robot.askedNow("Rotate angle_deg=360"));
    }

    // SLAM ends the dialogue.
    void endBy(NodeStatus slam)
    {
        robot.slam = slam;
        EXPECT_EQ(robot.finish(150), slam);
        EXPECT_EQ(robot.map, "end");
        EXPECT_TRUE(robot.asked("Stop"));
        EXPECT_EQ(robot.key("robot_trajectory"), "of the task") << "the track of the task comes back";
        EXPECT_FALSE(robot.has("in_lds_reloc_proc"));
    }

    RelocalisingRobot robot;
};

TEST_F(Relocalising, TurnsUntilItIsEnoughAndWaitsForAWord)
{
    robot.tick(200);
    EXPECT_TRUE(robot.askedNow("Rotate angle_deg=360 angular_velocity_deg_s=60"));
    EXPECT_TRUE(robot.notAsked("RelocMap"));
    robot.sayEnough();
    robot.tick(5);
    EXPECT_TRUE(robot.halted("Rotate"));
    EXPECT_EQ(robot.map, "start");
    EXPECT_FALSE(robot.has("rotate_reloc_finish"));
    robot.tick(300);
    EXPECT_TRUE(robot.started(4, "SaySomething message='tolvar wait cmd'"));
    endBy(SUCCESS);
}

TEST_F(Relocalising, SixAndSevenInTheTurnNeedNoFiveAndSendItBack)
{
    for (const bool known : {true, false}) {
        robot.begin();
        lookFrom(3000);
        robot.sayVerdict(known);
        EXPECT_TRUE(robot.tells("back_origin"));
        EXPECT_EQ(robot.key("current_pose"), "0");
        EXPECT_TRUE(robot.said(known ? "tolvar rcv 6" : "tolvar rcv 7"));
        robot.tick(5);
        EXPECT_FALSE(robot.has("exp_reloc_result")) << "an answer is used up";
        endBy(known ? SUCCESS : FAILURE);
    }
}

TEST_F(Relocalising, AfterFiveItStandsAndWaitsForSixSevenOrEight)
{
    for (const bool known : {true, false}) {
        robot.begin();
        lookFrom(3000);
        robot.sayEnough();
        robot.tick(100);
        EXPECT_FALSE(robot.askedNow("Rotate"));
        EXPECT_TRUE(robot.askedNow("Stop")) << "for as long as SLAM takes";
        robot.sayVerdict(known);
        EXPECT_TRUE(robot.tells("back_origin"));
        EXPECT_TRUE(robot.said(known ? "tolvar rcv 6 out" : "tolvar rcv 7 out"));
    }
}

TEST_F(Relocalising, EightIsNoVerdictAndTheNextPlaceIsGoneToFromHere)
{
    lookFrom(3000);
    robot.sayEnough();
    robot.set("ready_exp_again", "");
    robot.forget();
    robot.tick(10);
    EXPECT_TRUE(robot.said("tolvar rcv 8"));
    EXPECT_TRUE(robot.said("tolvar not 6/7"));
    EXPECT_TRUE(robot.keysAre("current_pose=3000 -relocalize_start_move"));
    robot.sendTo(5000);
    EXPECT_TRUE(robot.tells("reach_reloc"));
    EXPECT_TRUE(robot.keysAre("current_pose=5000 -ready_exp_again"));
}

TEST_F(Relocalising, ASilentSlamIsEndedByAChangeOfMode)
{
    lookFrom(3000);
    robot.tick(3000);
    EXPECT_TRUE(robot.askedNow("Rotate"));
    robot.halt();
    EXPECT_EQ(robot.map, "end");
    EXPECT_TRUE(robot.halted("Rotate | SlamActiveRelocalize"));
    EXPECT_EQ(robot.key("robot_trajectory"), "of the task");
}

TEST_F(Relocalising, APlaceWithoutAWayIsReportedAsReached)
{
    robot.sayEnough();
    robot.tick(5);
    robot.has_way = false;
    robot.sendTo(3000);
    EXPECT_TRUE(robot.tells("reach_reloc"));
    EXPECT_TRUE(robot.has("cant_reach_exp"));
    EXPECT_TRUE(robot.notAsked("NavigateProc"));
    EXPECT_EQ(robot.key("current_pose"), "0");
}

TEST_F(Relocalising, SaysWhenThereIsNoWayBack)
{
    lookFrom(3000);
    robot.has_way = false;
    robot.sayVerdict(true);
    EXPECT_TRUE(robot.tells("cant_back_origin"));
    endBy(SUCCESS);
}

TEST_F(Relocalising, GoesBackForThreeThousandFramesAtMost)
{
    lookFrom(3000);
    robot.drives = RUNNING;
    robot.sayVerdict(true);
    EXPECT_FALSE(robot.tells("cant_back_origin", 2990));
    EXPECT_TRUE(robot.tells("cant_back_origin", 20));
}

TEST_F(Relocalising, AnUnreadableVerdictIsAskedForAgain)
{
    lookFrom(3000);
    robot.set("exp_reloc_result", "perhaps");
    EXPECT_TRUE(robot.tells("reach_reloc"));
    EXPECT_FALSE(robot.has("exp_reloc_result"));
    robot.sayVerdict(true);
    EXPECT_TRUE(robot.tells("back_origin"));
    endBy(SUCCESS);
}

TEST_F(Relocalising, WithoutAPlaceItCrossesToAndFro)
{
    robot.sayEnough();
    robot.tick(5);
    robot.set("reloc_back_pose=0 static_exp");
    EXPECT_TRUE(robot.tells("reach_reloc", 150));
    EXPECT_TRUE(robot.started(2, "NaviOnePointProc"));
    robot.sayVerdict(true);
    EXPECT_TRUE(robot.tells("back_origin"));
    robot.tick(2);
    EXPECT_TRUE(robot.keysAre("-static_exp -exp_reloc_result"));

    robot.set("static_exp", "");
    robot.drives = FAILURE;
    EXPECT_TRUE(robot.tells("reach_reloc", 150)) << "a leg that is blocked does not stop it";
    robot.sayEnough();
    robot.tick(5);
    EXPECT_FALSE(robot.has("static_exp"));
}

TEST_F(Relocalising, ATrapOnTheWayBeginsWithTheFirstTurnAgain)
{
    robot.sayEnough();
    robot.tick(5);
    robot.drives = RUNNING;
    robot.sendTo(3000);
    robot.tick(5);
    ASSERT_TRUE(robot.askedNow("NavigateProc"));
    robot.trapped = true;
    robot.tick(20);
    EXPECT_TRUE(robot.halted("NavigateProc"));
    EXPECT_FALSE(robot.askedNow("SlamActiveRelocalize"));
    robot.trapped = false;
    robot.forget();
    robot.tick(5);
    EXPECT_TRUE(robot.asked("Rotate"));
    EXPECT_TRUE(robot.notAsked("NavigateProc")) << "the old command is cleared";
    endBy(SUCCESS);
}

TEST_F(Relocalising, TheMapOfTheSurroundingsEndsOnEveryWayOut)
{
    const auto reach = [this](int stage) {
        robot.begin();
        robot.drives = SUCCESS;
        robot.tick(10);
        if (stage > 0)
            robot.sayEnough();
        robot.tick(10);
        if (stage > 1)
            robot.sendTo(3000);
        robot.drives = stage == 2 ? RUNNING : SUCCESS;
        robot.tick(20);
        if (stage > 3)
            robot.sayEnough();
        robot.tick(10);
        robot.drives = stage == 5 ? RUNNING : SUCCESS;
        if (stage > 4)
            robot.sayVerdict(true);
        robot.tick(3);
    };
    // The first turn, the wait for a word, the walk, the turn there, the wait for a verdict, the way back.
    for (int stage = 0; stage < 6; ++stage) {
        reach(stage);
        EXPECT_EQ(robot.map, stage == 0 ? "" : "start") << stage;
        robot.halt();
        EXPECT_EQ(robot.map, "end") << stage;
        for (const NodeStatus slam : {SUCCESS, FAILURE}) {
            reach(stage);
            endBy(slam);
        }
    }
}

TEST(OlderRelocalising, LooksBesideItsWalkAndFailsWithTheWalksEnd)
{
    for (const char* tree : {"ActiveRelocalize_Crossline", "ActiveRelocalize_Triangle"}) {
        RelocalisingRobot robot;
        robot.tree("BlindAdvance").succeedsAfter(3);
        robot.leaf("Rotate").succeedsAfter(3);
        EXPECT_EQ(robot.finish(tree, 400), FAILURE) << tree;
        EXPECT_TRUE(robot.keysAre("-relocalize_failed -relocalize_first_yaw"));

        robot.run(tree, 20);
        robot.slam = SUCCESS;
        EXPECT_EQ(robot.finish(5), SUCCESS) << tree;
        EXPECT_FALSE(robot.has("relocalize_failed"));

        robot.slam = FAILURE;
        EXPECT_EQ(robot.finish(tree, 5), FAILURE) << tree;
    }
}

TEST(OlderRelocalising, OnTheSpotStandsUntilSlamIsDone)
{
    for (const NodeStatus slam : {SUCCESS, FAILURE}) {
        RelocalisingRobot robot;
        EXPECT_EQ(robot.finish("ActiveRelocalize_InPlace", 1000), RUNNING);
        EXPECT_TRUE(robot.notAsked("Rotate"));
        robot.slam = slam;
        EXPECT_EQ(robot.finish(5), slam);
        EXPECT_TRUE(robot.asked("Stop"));
    }
}

}  // namespace
}  // namespace vemra::test
