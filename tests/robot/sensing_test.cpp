#include <algorithm>

#include "behaviortree_cpp/xml_parsing.h"
#include "robot/body_rig.h"
#include "robot/grid_sketch.h"
#include "robot/services/escape/escape_path.h"
#include "robot/services/sensing/sensing_direction.h"

namespace vemra::robot {
namespace {

struct Sensing : testing::Test
{
    // 3 m by 3 m of floor; the robot in the middle looks to the right.
    BodyRig rig{room(60, 60), {{1500, 1500}, {0}}};

    bool bumped(const std::string& leaf = "SensorCheckBumped")
    {
        return rig.passes(leaf + " out_bump_dir=bump_dir");
    }

    // What is felt now, as the trees see it.
    std::string felt()
    {
        bumped();
        return rig.text("bump_dir");
    }
};

TEST(BumpDirection, TwoContactsMakeOne)
{
    const char* const cases[][3] = {{"left", "right", "middle"},
                                    {"left_cliff", "right_cliff", "middle_cliff"},
                                    {"None", "right", "right"},
                                    {"", "None", "None"},
                                    {"virtual", "right_dock", "right_dock"},
                                    {"left_cliff", "right", "right"}};  // what was touched counts most
    for (const auto& [a, b, merged] : cases)
        EXPECT_EQ(mergedDirection(a, b), merged) << a << ' ' << b;
}

TEST(SensorSwitches, TheYoungestScopeDecidesUnlessAnOlderOneIsLocked)
{
    SensorSwitches switches;
    const int outer = 0;
    const int inner = 0;
    EXPECT_TRUE(switches.isOn("DockField"));
    EXPECT_FALSE(switches.isOn("BackWardsBump")) << "counts only where a tree asks for it";
    switches.open(&outer, "DockField", false, false);
    switches.open(&inner, "DockField", true, false);
    EXPECT_TRUE(switches.isOn("DockField"));
    switches.close(&inner);
    EXPECT_FALSE(switches.isOn("DockField"));
    switches.close(&outer);
    EXPECT_TRUE(switches.isOn("DockField"));

    switches.open(&outer, "DockField", false, true);
    switches.open(&inner, "DockField", true, false);
    EXPECT_FALSE(switches.isOn("DockField"));
}

TEST_F(Sensing, TheBumperTellsWhereItIsPressed)
{
    EXPECT_EQ(felt(), "None");
    EXPECT_FALSE(rig.passes("Bumped bump_dir=${bump_dir}"));
    rig.body.carryTo({{2740, 1500}, {60}});
    rig.drive({150, 150}, 40);
    EXPECT_EQ(felt(), "right");
    EXPECT_TRUE(rig.passes("Bumped bump_dir=${bump_dir}"));
    EXPECT_TRUE(rig.passes("BumpdirMatch para_a=${bump_dir} para_b=right"));
    ASSERT_TRUE(
        rig.passes("BumpdirMerge bumpdir1=${bump_dir} bumpdir2=${merge_bump_dir} out_bumpdir=bump_dir"));
    EXPECT_EQ(rig.text("bump_dir"), "right") << "a key that is not there adds nothing";
    rig.blackboard->set("ignore_all_bump_event_flag", "");
    EXPECT_FALSE(bumped());
}

TEST_F(Sensing, BehindTheRobotCountsWhereATreeAsksForIt)
{
    rig.body.carryTo({{250, 1500}, {0}});
    EXPECT_EQ(felt(), "None");
    rig.enterLeaf("TemporarilyEnableSensor sensor=BackWardsBump");
    rig.frame();
    EXPECT_EQ(felt(), "BackWardsBump");
    EXPECT_FALSE(rig.passes("BodyInObstacle outline_dist=0"));
    EXPECT_TRUE(rig.passes("BodyInObstacle outline_dist=60"));
}

TEST_F(Sensing, AnEdgeCountsUnlessItIsSwitchedOffInThisFrame)
{
    rig.world.addCliff({{1620, 1500}, {3000, 3000}});
    rig.frame();
    EXPECT_EQ(felt(), "middle_cliff");
    EXPECT_TRUE(bumped("CheckClifBump"));
    rig.blackboard->set("shutdown_cliff", "");
    rig.frame();
    EXPECT_FALSE(bumped());
    rig.frame();
    EXPECT_TRUE(bumped()) << "holds for a frame";
}

TEST_F(Sensing, VirtualWallsHoldTheRobotBackButLetItOut)
{
    rig.walls.lines.push_back({{1680, 0}, {1680, 3000}});
    rig.frame();
    EXPECT_EQ(felt(), "virtual");
    rig.body.carryTo({{1500, 1500}, {180}});
    EXPECT_EQ(felt(), "None") << "behind the robot";
    rig.body.carryTo({{1500, 1500}, {0}});

    rig.enterLeaf("TemporarilyDisableSensor sensor=VirtualWall lock_status=false");
    EXPECT_EQ(rig.frame(), NodeStatus::RUNNING);
    EXPECT_EQ(felt(), "None");
    BT::haltNode(*rig.tree.root_node);
    EXPECT_EQ(felt(), "virtual");

    rig.walls.lines.clear();
    rig.walls.areas.push_back({{1650, 1000}, {2500, 1000}, {2500, 2000}, {1650, 2000}});
    EXPECT_EQ(felt(), "virtual");
    ASSERT_TRUE(rig.passes("SensorProbeBump out_str=sensor_probe_trap"));
    EXPECT_EQ(rig.text("sensor_probe_trap"), "PolygonTrap");
    rig.body.carryTo({{2400, 1500}, {0}});
    EXPECT_EQ(felt(), "None") << "from within it is free to leave";
}

TEST_F(Sensing, BeingMovedAndLiftedIsFelt)
{
    rig.passes("GetWheelsDropStateBeforeSleep");
    EXPECT_FALSE(rig.passes("DoesRobotMoved"));
    rig.body.lift();
    rig.frame();
    EXPECT_TRUE(rig.passes("DoesWheelsDrop"));
    EXPECT_TRUE(rig.passes("DoesWheelsChangedWhenSleep"));
    rig.body.setDown({{1000, 1000}, {0}});
    rig.frames(50);
    EXPECT_FALSE(rig.passes("DoesRobotMoved"));
    EXPECT_TRUE(rig.passes("DoesIMUDetectMoveLast2S"));
    EXPECT_FALSE(rig.passes("DoesWheelsChangedWhenSleep"));
    rig.frames(60);
    EXPECT_FALSE(rig.passes("DoesIMUDetectMoveLast2S"));
}

// The review of an obstacle, by the tree of the plug-in.
struct Review : testing::Test
{
    BodyRig rig{room(60, 60), {{1500, 1500}, {0}}};
    double least_yaw = 0;
    double most_yaw = 0;
    PointMm furthest;

    // One step of a wall follow's review; how the robot moved in it is kept.
    NodeStatus step()
    {
        rig.blackboard->set("current_draw_mode", "Default");
        const PointMm from = rig.at();
        least_yaw = most_yaw = rig.yaw();
        furthest = from;
        rig.enter("LaserReviewAction");
        NodeStatus status = NodeStatus::RUNNING;
        for (int i = 0; i < 2000 && status == NodeStatus::RUNNING; ++i) {
            status = rig.frame();
            least_yaw = std::min(least_yaw, rig.yaw());
            most_yaw = std::max(most_yaw, rig.yaw());
            if (distance(rig.at(), from) > distance(furthest, from))
                furthest = rig.at();
        }
        rig.tree = {};
        rig.frames(20);
        return status;
    }
};

TEST_F(Review, ALowThingAheadIsLookedAtOnceFromSidesAndALittleAway)
{
    EXPECT_EQ(step(), NodeStatus::SUCCESS);
    EXPECT_EQ(furthest, (PointMm{1500, 1500})) << "nothing to look at";

    rig.world.putDown({{1750, 1450}, {1800, 1550}}, Height::Low);
    EXPECT_EQ(step(), NodeStatus::SUCCESS);
    EXPECT_NEAR(furthest.x, 1450, 12) << "50 mm back";
    EXPECT_NEAR(most_yaw, 20, 4);
    EXPECT_NEAR(least_yaw, -20, 4);
    EXPECT_NEAR(rig.yaw(), 0, 4);
    EXPECT_NEAR(rig.at().x, 1500, 12);
    EXPECT_TRUE(rig.keysAre("current_action=SuspectWireDetect -review_halt_token")) << "it is where it was";

    EXPECT_EQ(step(), NodeStatus::SUCCESS);
    EXPECT_LT(most_yaw - least_yaw, 1) << "known by now";

    // A thing that the laser sees needs no second look.
    rig.world.putDown({{1400, 2250}, {1600, 2300}});
    rig.body.carryTo({{1500, 2000}, {90}});
    EXPECT_EQ(step(), NodeStatus::SUCCESS);
    EXPECT_LT(most_yaw - least_yaw, 1);
}

TEST_F(Review, AStepInTheFloorIsLookedAtOnceFromAHandsWidthAway)
{
    rig.set("fAngle_start=20 fAngle_dest=20");
    // Felt to the left of where the robot looks, under the rim of its body.
    rig.world.putDown({{1580, 1600}, {1700, 1900}}, Height::Step);
    rig.frame();
    EXPECT_TRUE(rig.blackboard->contains("suspect_step"));
    EXPECT_EQ(step(), NodeStatus::SUCCESS);
    EXPECT_TRUE(rig.keysAre("current_action=SuspectLineDetect -suspect_step"));
    EXPECT_NEAR(distance(furthest, {1500, 1500}), 100, 12);
    EXPECT_NEAR(most_yaw, 70, 10) << "turned to it, then 20 degrees to either side";
    EXPECT_NEAR(rig.yaw(), 50, 10);

    EXPECT_EQ(step(), NodeStatus::SUCCESS);
    EXPECT_LT(most_yaw - least_yaw, 1) << "known by now";

    // One that it has left behind is no longer looked for.
    rig.world.putDown({{2120, 1450}, {2200, 1550}}, Height::Step);
    rig.carryTo({{1950, 1500}, {0}});
    EXPECT_TRUE(rig.blackboard->contains("suspect_step"));
    rig.carryTo({{1200, 1500}, {0}});
    EXPECT_FALSE(rig.blackboard->contains("suspect_step"));
}

// The trees of the plug-in on the body.
struct EscapeTrees : testing::Test
{
    BodyRig rig{room(60, 60), {{1500, 1500}, {0}}};

    // A task as the modes have it: the escape first, then the motion behind its gate.
    void enterTask(int speed)
    {
        rig.set("speed=" + std::to_string(speed));
        rig.tree = BT::buildTreeFromText(rig.factory, R"(<root><BehaviorTree ID="Task"><Sequence>
              <ForceSuccess><SubtreeCondition subtree_file_path="EscapeCoat.xml"/></ForceSuccess>
              <Sequence>
                <SubtreeCondition subtree_file_path="Escape.xml"/>
                <OpenCloseMove left_mm_s="${speed}" right_mm_s="${speed}"/>
              </Sequence>
            </Sequence></BehaviorTree></root>)",
                                         rig.blackboard);
    }

    // Ticks the task over and over, as its mode would; how often it failed.
    int failuresIn(int frames)
    {
        int failures = 0;
        for (int i = 0; i < frames; ++i)
            failures += rig.frame() == NodeStatus::FAILURE ? 1 : 0;
        return failures;
    }
};

TEST_F(EscapeTrees, AnEscapeHaltsTheDriveAndTheDriveStartsAnew)
{
    enterTask(150);
    rig.frames(50);
    const double before = rig.at().x;
    rig.body.holdFast(500);
    ASSERT_EQ(failuresIn(74), 0);
    EXPECT_EQ(rig.body.commanded(), (WheelSpeeds{150, 150})) << "not yet";
    EXPECT_EQ(failuresIn(10), 0);
    EXPECT_NE(rig.body.commanded(), (WheelSpeeds{150, 150}));
    EXPECT_FALSE(rig.passes("NotTrapped"));

    EXPECT_EQ(failuresIn(400), 1) << "the drive is told once";
    EXPECT_FALSE(rig.body.heldFast());
    EXPECT_TRUE(rig.passes("NotTrapped"));
    EXPECT_EQ(rig.body.commanded(), (WheelSpeeds{150, 150}));
    EXPECT_GT(rig.at().x, before + 100);
}

TEST_F(EscapeTrees, ARobotAtAnEdgeComesBack)
{
    rig.world.addCliff({{1750, 0}, {3000, 3000}});
    enterTask(60);
    double furthest = 0;
    for (int i = 0; i < 400 && !rig.happened("free: at an edge"); ++i) {
        rig.frame();
        furthest = std::max(furthest, rig.at().x);
    }
    ASSERT_TRUE(rig.happened("free: at an edge"));
    EXPECT_FALSE(rig.body.cliffs().any());
    EXPECT_GT(furthest, 1600);
    EXPECT_LT(rig.at().x, 1600);
    EXPECT_FALSE(rig.happened("a wheel hangs"));
}

TEST_F(EscapeTrees, AnEscapeThatDoesNotWorkComesBackAndIsCutOffByAHalt)
{
    rig.escape.raise(EscapeKind::SideCurrent, 1000);
    rig.enter("EscapeCoat");
    EXPECT_EQ(rig.run(500), NodeStatus::SUCCESS) << "nobody is told of an escape that failed";
    EXPECT_TRUE(rig.happened("still stuck: the side brush"));
    EXPECT_TRUE(rig.keysAre("trapped=true -finish_escape"));

    rig.frames(20);
    EXPECT_LT(rig.body.commanded().left, 0);
    BT::haltNode(*rig.tree.root_node);
    EXPECT_EQ(rig.body.commanded(), WheelSpeeds{});
    rig.escape.clear(EscapeKind::SideCurrent);
    rig.enter("EscapeCoat");
    EXPECT_EQ(rig.run(2), NodeStatus::SUCCESS);
    EXPECT_EQ(rig.text("trapped"), "false");
}

TEST_F(EscapeTrees, ARobotThatDoesNotGetFreeHasAnErrorUntilSomebodyHelps)
{
    rig.escape.raise(EscapeKind::BrushCurrent, 1e6);
    enterTask(100);
    rig.frames(400);
    EXPECT_TRUE(rig.happened("still stuck: the main brush"));
    EXPECT_TRUE(rig.state.errors.empty()) << "not at the first try";
    rig.frames(600);
    EXPECT_THAT(rig.state.errors, ElementsAre("BRUSH"));
    rig.escape.clear(EscapeKind::BrushCurrent);
    rig.frame();
    EXPECT_TRUE(rig.state.errors.empty());

    // What is known by its effect alone lasts until the robot is moved.
    rig.body.holdFast(1e6);
    rig.frames(3000);
    rig.tree = {};
    rig.body.stop();
    rig.frames(100);
    EXPECT_FALSE(rig.state.errors.empty());
    rig.body.lift();
    rig.frames(50);
    rig.body.setDown({{1000, 1000}, {0}});
    rig.frames(2);
    EXPECT_TRUE(rig.state.errors.empty());
}

TEST_F(EscapeTrees, ALiftedRobotWaitsToBeSetDown)
{
    enterTask(150);
    rig.frames(50);
    rig.body.lift();
    rig.frames(200);
    EXPECT_TRUE(rig.happened("escape: a wheel hangs"));
    EXPECT_EQ(rig.body.commanded(), WheelSpeeds{}) << "wheels in the air stand";
    rig.body.setDown({{800, 800}, {90}});
    rig.frames(60);
    EXPECT_TRUE(rig.happened("free: a wheel hangs"));
    EXPECT_GT(rig.at().y, 850) << "and the task goes on from there";
    EXPECT_TRUE(rig.state.errors.empty());
    rig.body.lift();
    rig.frames(700);
    EXPECT_THAT(rig.state.errors, ElementsAre("DROP")) << "held up for ten seconds";
}

TEST_F(EscapeTrees, ALineIsDrivenToItsEndOrToTheFirstBump)
{
    rig.blackboard->set("next_line_to_clean_stack", "1 2 3");
    ASSERT_TRUE(rig.passes("SetFixOrientation target_point=2300;1500"));
    rig.enter("FixOrientation");
    EXPECT_EQ(rig.run(500), NodeStatus::SUCCESS);
    EXPECT_NEAR(rig.at().x, 2300, 30);
    EXPECT_TRUE(rig.blackboard->contains("next_line_to_clean_stack"));

    rig.world.putDown({{1700, 1400}, {1750, 1600}}, Height::Low);
    ASSERT_TRUE(rig.passes("SetFixOrientation target_point=1000;1500"));
    EXPECT_EQ(rig.run(800), NodeStatus::FAILURE);
    EXPECT_NEAR(rig.at().x, 1750 + kRobotRadiusMm + 15, 15) << "backed off the thing on the line";
    EXPECT_TRUE(rig.keysAre("bump_dir=middle -next_line_to_clean_stack"));
}

// A lane as wide as the body, open to the right.
TEST(EscapePath, LeadsIntoTheOpenWhereTheSameTroubleComesBack)
{
    std::vector<std::string> lines = room(60, 40);
    fill(lines, {1, 1}, {30, 15}, '#');
    fill(lines, {1, 23}, {30, 38}, '#');
    const Home home = sketch(lines);
    Chance chance(3);
    const PoseMm wedged{{400, 975}, {90}};
    const auto path = pathIntoTheOpen(takeScan(home, wedged, {}, chance), 0);
    ASSERT_EQ(path.size(), 2U);
    EXPECT_THAT(path[0].speeds.left, Gt(0)) << "to the right";
    const double turned = degreesOfRadians(path[0].frames * 0.02 * 120 / 115).value;
    EXPECT_NEAR(turned, 90, 8);
    EXPECT_THAT(path[1].frames * 0.02 * 120, Gt(600));
    // The next time another way is tried.
    const auto other = pathIntoTheOpen(takeScan(home, wedged, {}, chance), 1);
    EXPECT_FALSE(other[0].speeds == path[0].speeds && other[0].frames == path[0].frames);
}

}  // namespace
}  // namespace vemra::robot
