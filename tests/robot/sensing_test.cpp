#include <gmock/gmock.h>

#include "robot/body_rig.h"
#include "robot/services/sensing/sensing_direction.h"

namespace vemra::robot {
namespace {

using BT::NodeStatus;

class Sensing : public testing::Test
{
protected:
    // 3 m by 3 m of floor; the robot in the middle looks to the right.
    BodyRig rig{room(60, 60), {{1500, 1500}, {0}}};

    bool bumped(const char* leaf = "SensorCheckBumped")
    {
        return rig.passes(leaf, {{"out_bump_dir", "bump_dir"}});
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
    for (const auto& [a, b, merged] : cases) {
        EXPECT_EQ(mergedDirection(a, b), merged) << a << ' ' << b;
    }
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
    EXPECT_FALSE(rig.passes("Bumped", {{"bump_dir", "${bump_dir}"}}));
    rig.body.carryTo({{2740, 1500}, {60}});
    rig.body.drive({150, 150});
    rig.frames(40);
    EXPECT_EQ(felt(), "right");
    EXPECT_TRUE(rig.passes("Bumped", {{"bump_dir", "${bump_dir}"}}));
    EXPECT_TRUE(rig.passes("BumpdirMatch", {{"para_a", "${bump_dir}"}, {"para_b", "right"}}));
    ASSERT_TRUE(rig.passes(
        "BumpdirMerge",
        {{"bumpdir1", "${bump_dir}"}, {"bumpdir2", "${merge_bump_dir}"}, {"out_bumpdir", "bump_dir"}}));
    EXPECT_EQ(rig.text("bump_dir"), "right") << "a key that is not there adds nothing";
    rig.blackboard->set("ignore_all_bump_event_flag", "");
    EXPECT_FALSE(bumped());
}

TEST_F(Sensing, BehindTheRobotCountsWhereATreeAsksForIt)
{
    rig.body.carryTo({{250, 1500}, {0}});
    EXPECT_EQ(felt(), "None");
    rig.enterLeaf("TemporarilyEnableSensor", {{"sensor", "BackWardsBump"}});
    rig.frame();
    EXPECT_EQ(felt(), "BackWardsBump");
    EXPECT_FALSE(rig.passes("BodyInObstacle", {{"outline_dist", "0"}}));
    EXPECT_TRUE(rig.passes("BodyInObstacle", {{"outline_dist", "60"}}));
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

    rig.enterLeaf("TemporarilyDisableSensor", {{"sensor", "VirtualWall"}, {"lock_status", "false"}});
    EXPECT_EQ(rig.frame(), NodeStatus::RUNNING);
    EXPECT_EQ(felt(), "None");
    BT::haltNode(*rig.tree.root_node);
    EXPECT_EQ(felt(), "virtual");

    rig.walls.lines.clear();
    rig.walls.areas.push_back({{1650, 1000}, {2500, 1000}, {2500, 2000}, {1650, 2000}});
    EXPECT_EQ(felt(), "virtual");
    ASSERT_TRUE(rig.passes("SensorProbeBump", {{"out_str", "sensor_probe_trap"}}));
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

}  // namespace
}  // namespace vemra::robot
