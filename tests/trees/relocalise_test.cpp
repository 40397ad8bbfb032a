#include <array>
#include <random>

#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

/// A robot that has lost its place, on a line of floor. SLAM is the test: it writes the keys of the dialogue
/// and says in `slam` how its search stands.
class RelocalisingRobot : public ScriptedRobot
{
public:
    RelocalisingRobot()
    {
        pointsOnALine();
        for (const char* key : {"current_pose", "current_coord", "current_odom"})
            set(key, 0);
        set("current_yaw_deg=0.0 current_odom_yaw_deg=0.0 robot_trajectory='of the task'");
        leaf("SlamActiveRelocalize").decides([this](const Moment& now) {
            first_turn = first_turn || now.tick_of_run == 0;
            return slam;
        });
        leaf("Rotate").runs();
        leaf("AwesomeSearch").follows(has_way);
        leaf("NotTrapped").succeeds();
        leaf("RelocMap").decides([this](const Moment& now) {
            map = now.port("reloc_state");
            first_turn = false;
            return SUCCESS;
        });
        leaf("SlamReachReloc").decides([this](const Moment& now) {
            answer = now.port("send_cmd");
            return SUCCESS;
        });
        leaf("CoordOffset").fills("out_point", -1000);
        tree("EscapeCoat").decides([this](const Moment&) { return trapped ? RUNNING : FAILURE; });
        tree("Escape").succeeds();
        tree("NavigateFollowWall").fails();
        for (const char* drive : {"NavigateProc", "NaviOnePointProc"})
            tree(drive).decides([this](const Moment& now) {
                if (drives != SUCCESS || now.tick_of_run < 3)
                    return drives == FAILURE ? FAILURE : RUNNING;
                int goal = 0;
                now.keys.get("navi_target_point", goal);
                now.set("current_pose", goal);
                return SUCCESS;
            });
    }

    /// In the first turn, with nothing said yet.
    void begin()
    {
        halt();
        slam = RUNNING;
        map.clear();
        answer.clear();
        set("current_pose", 0);
        for (const char* word : {"rotate_reloc_finish", "exp_reloc_result", "ready_exp_again",
                                 "slam_exp_pose", "relocalize_start_move", "static_exp", "cant_reach_exp"})
            erase(word);
        start("ActiveRelocalize_LdsInteractive");
        tick();
    }

    /// Number 5.
    void sayEnough() { set("rotate_reloc_finish", ""); }
    /// Number 6 or 7.
    void sayVerdict(bool known) { set("exp_reloc_result", known ? "true" : "false"); }
    void sendTo(int place)
    {
        set("slam_exp_pose", place);
        set("reloc_back_pose=0 relocalize_start_move");
    }
    /// Ticks until the tree tells SLAM this, for so many frames at most.
    bool tells(const std::string& what, int at_most = 50)
    {
        for (int i = 0; i < at_most; ++i) {
            answer.clear();
            tick();
            if (answer == what)
                return true;
        }
        return false;
    }

    NodeStatus slam = RUNNING;
    NodeStatus drives = SUCCESS;
    bool has_way = true;
    bool trapped = false;
    bool first_turn = true;  ///< SLAM has begun, and the turn is not over yet
    std::string map;         ///< state of the map of the surroundings, as last told
    std::string answer;      ///< what was last told to SLAM
};

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

// --- SLAM as it never should be -------------------------------------------------------------------

/// SLAM as it never should be: it says anything at any time, the floor and the body do what they like, and
/// the mode changes in between.
class WildScript
{
public:
    explicit WildScript(unsigned seed) : random_(seed) {}

    void frame(RelocalisingRobot& robot)
    {
        constexpr unsigned kOften = 6;
        if (random_() % kOften == 0)
            happen(robot);
        robot.tick();
    }

private:
    void happen(RelocalisingRobot& robot)
    {
        static constexpr const char* kWords[] = {"rotate_reloc_finish",   "ready_exp_again",  "static_exp",
                                                 "relocalize_start_move", "exp_reloc_result", "slam_exp_pose",
                                                 "reloc_back_pose"};
        static constexpr NodeStatus kDrives[] = {SUCCESS, FAILURE, RUNNING};
        const auto any = [this](const auto& list) { return list[random_() % std::size(list)]; };
        const std::function<void()> acts[] = {
            [&] { robot.sayEnough(); },
            [&] {
                robot.set("exp_reloc_result", any(std::array{"true", "false", "perhaps", ""}));
            },
            [&] { robot.set("ready_exp_again"); },
            [&] { robot.sendTo(static_cast<int>(random_() % 4) * 1000); },
            [&] { robot.set("static_exp"); },
            [&] { robot.erase(any(kWords)); },
            [&] { robot.has_way = !robot.has_way; },
            [&] { robot.drives = any(kDrives); },
            [&] { robot.trapped = random_() % 3 == 0; },
            [&] {
                robot.halt();
                EXPECT_TRUE(robot.map == "end" && robot.key("robot_trajectory") == "of the task");
                robot.begin();
            }};
        any(acts)();
    }

    std::mt19937 random_;
};

/// SLAM as it should be, from wherever the talk stands: its words are levels. True: the tree came back from a
/// place with a verdict within so many frames.
bool bringToAnEnd(RelocalisingRobot& robot, int at_most)
{
    robot.has_way = true;
    robot.drives = SUCCESS;
    robot.trapped = false;
    robot.set("-exp_reloc_result -ready_exp_again -rotate_reloc_finish reloc_back_pose=0");
    bool asked = false;
    for (int i = 0; i < at_most; ++i) {
        robot.answer.clear();
        robot.tick();
        if (robot.answer == "back_origin" || robot.answer == "cant_back_origin")
            return true;
        asked = !robot.first_turn && (asked || robot.answer == "reach_reloc");
        // Where it waits for a verdict on what was asked before, it gets one at last.
        const bool offered = robot.has("relocalize_start_move") || robot.has("static_exp");
        if (asked || (!robot.first_turn && offered && i % 100 == 99))
            robot.sayVerdict(true);
        else if (robot.first_turn)
            robot.sayEnough();
        else if (!offered)
            robot.sendTo(2000);
    }
    return false;
}

TEST(RelocalisingScripts, NoneOf500LeavesTheTreeStandingForEver)
{
    RelocalisingRobot robot;
    for (unsigned seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE(seed);
        WildScript script(seed);
        robot.begin();
        for (int i = 0; i < 120; ++i)
            script.frame(robot);
        ASSERT_TRUE(bringToAnEnd(robot, 1000));
        robot.slam = SUCCESS;
        ASSERT_EQ(robot.finish(150), SUCCESS);
        ASSERT_EQ(robot.map, "end");
        ASSERT_EQ(robot.key("robot_trajectory"), "of the task");
    }
}

}  // namespace
}  // namespace vemra::test
