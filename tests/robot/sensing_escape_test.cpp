#include "behaviortree_cpp/xml_parsing.h"
#include "robot/body_rig.h"
#include "robot/grid_sketch.h"
#include "robot/services/escape/escape_path.h"

namespace vemra::robot {
namespace {

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
