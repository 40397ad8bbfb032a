#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

/// A bridge from 1000 to 1600 mm on a line, the robot at its near end.
struct Bridge : RobotOnALine
{
    Bridge()
    {
        robot.set("navigation_bridge=bridge current_pose=900 current_coord=900 navi_target_point=3000");
        robot.set("gridmap_limit=home current_subregion=room navigation_path=path");
        robot.set("navigation_path_segments=plan path_bridge_max_failure_cnt=0 awesome_search_mode=Target");
        robot.set("awesome_search_region=home current_draw_mode=ClearOnly current_tick_cnt=1");
        robot.leaf("BridgeDestructor")
            .fills("out_from_point", 1000)
            .fills("out_to_point", 1600)
            .fills("out_follow_wall_dist", 500);
        robot.succeed("NotTrapped | BridgeValid | FollowWallNotLooped");
        robot.leaf("CrossBridgeMonitor").runs();
        robot.tree("Back2cm").succeeds();
    }

    void ofType(const char* type) { robot.leaf("BridgeTypeReader").fills("out_bridge_type", type); }
};

TEST_F(Bridge, OfAnyOtherKindIsRunToItsFarEnd)
{
    ofType("NARROW");
    robot.tree("NavigateTree").succeedsAfter(30);
    robot.set("cross_bridge_trap_times", 9);
    EXPECT_EQ(robot.run("CrossBridge", 10), RUNNING);
    EXPECT_TRUE(robot.keysAre("cross_bridge_trap_times=0 navi_target_point=1600 bridges_crossing=bridge"));
    EXPECT_TRUE(robot.keysAre("not_trace_token=CrossBridge"));
    EXPECT_EQ(robot.finish(50), SUCCESS);
    EXPECT_TRUE(robot.keysAre("-bridges_crossing -cross_bridge_trap_times -when_bridge_navi"));
    EXPECT_TRUE(robot.keysAre("cross_bridge_success bump_dir=None"));
    EXPECT_TRUE(robot.halted("CrossBridgeMonitor | TemporarilyDisableSensor sensor=VirtualWall"));
}

TEST_F(Bridge, ThatNoLongerFitsTheMapIsUsedUp)
{
    ofType("NARROW");
    robot.tree("NavigateTree").runs();
    robot.run("CrossBridge", 5);
    robot.leaf("BridgeValid").fails();
    EXPECT_EQ(robot.finish(10), FAILURE);
    EXPECT_TRUE(robot.halted("NavigateTree"));
    EXPECT_TRUE(robot.started(1, "CutdownBridges"));
    EXPECT_FALSE(robot.has("cross_bridge_success"));

    robot.set("path_bridge_max_failure_cnt", 1);
    EXPECT_EQ(robot.tick(20), RUNNING) << "the search took it with its failure";
    robot.set("traped_when_crossing", "");
    EXPECT_EQ(robot.finish(10), FAILURE) << "an escape on it was refused";
    EXPECT_FALSE(robot.has("traped_when_crossing"));
}

TEST_F(Bridge, BlockedByAnObstacleIsTriedAlongItOnBothSides)
{
    ofType("NARROW");
    robot.tree("NavigateTree").fails();
    robot.tree("NaviOnePointProc").fails();  // it bumps again where it was
    robot.tree("PreciseFollowWallProc").failsAfter(5);
    robot.tree("FollowWallProc").failsAfter(5);
    robot.leaf("Bumped").succeeds();
    robot.set("bump_dir=Left follow_wall_dir=true");
    EXPECT_EQ(robot.finish("CrossBridge", 100), FAILURE);
    EXPECT_TRUE(robot.started(2, "PreciseFollowWallProc")) << "a short allowance is followed precisely";
    EXPECT_TRUE(robot.notAsked("FollowWallProc"));
    EXPECT_EQ(robot.key("follow_wall_dir"), "false");

    robot.leaf("BridgeDestructor")
        .fills("out_from_point", 1000)
        .fills("out_to_point", 1600)
        .fills("out_follow_wall_dist", 1001);
    robot.forget();
    EXPECT_EQ(robot.finish(100), FAILURE);
    EXPECT_TRUE(robot.started(2, "FollowWallProc"));
    EXPECT_EQ(robot.key("follow_wall_dir"), "true");
}

// What ends one of the two ways of crossing does not end the other.
TEST_F(Bridge, OnceCrossedEndsInTheCurrentAreaAndAnyOtherNearAnOpenEndOfTheChain)
{
    const auto ends = [this](const char* type, const char* by) {
        ofType(type);
        robot.tree("NavigateTree").runs();
        robot.fail("InCurrentArea | IsNearChainOpenEnd");
        EXPECT_EQ(robot.run("CrossBridge", 5), RUNNING) << type;
        robot.leaf(by).succeeds();
        return robot.finish(5);
    };
    EXPECT_EQ(ends("HISTORY", "InCurrentArea"), SUCCESS);
    EXPECT_EQ(ends("HISTORY", "IsNearChainOpenEnd"), RUNNING);
    EXPECT_EQ(ends("NARROW", "IsNearChainOpenEnd"), SUCCESS);
    EXPECT_EQ(ends("NARROW", "InCurrentArea"), RUNNING);
}

TEST_F(Bridge, OnWhichTheRobotIsTrappedIsTriedAgainAfterOneFrameOfRest)
{
    ofType("NARROW");
    robot.fail("NavigateTree | NotTrapped");
    robot.start("CrossBridge");
    std::vector<bool> tries;
    for (int frame = 0; frame < 6; ++frame) {
        EXPECT_EQ(robot.tick(), RUNNING);
        tries.push_back(robot.askedNow("NavigateTree"));
    }
    EXPECT_THAT(tries, ElementsAre(true, false, true, false, true, false));
    EXPECT_EQ(robot.key("cross_bridge_trap_times"), "3");
}

TEST_F(Bridge, OutOfAVirtualWallIsDrivenUntilTheRobotIsOutside)
{
    ofType("TMP");
    robot.leaf("DwaLocalPlanner").failsAfter(10);
    robot.leaf("BridgeCrossed").provided([](const Moment& now) { return now.frame > 20; }).succeeds();
    robot.tree("NavigateFollowWall").fails();
    EXPECT_EQ(robot.finish("CrossBridge", 60), SUCCESS);
    EXPECT_TRUE(robot.started(2, "DwaLocalPlanner")) << "the first try ended inside";
    EXPECT_TRUE(robot.started(1, "AwesomeSearch search_mode=Target"));
    EXPECT_TRUE(robot.asked("TemporarilyDisableSensor sensor=PolygonVirtualWall"));
    EXPECT_TRUE(robot.said("过临时桥成功，已在虚拟墙外"));
    EXPECT_TRUE(robot.asked("SetMapDrawMode draw_mode=ClearOnly")) << "as it was before";
    EXPECT_FALSE(robot.has("have_trapped_type"));
}

TEST_F(Bridge, OutOfAVirtualWallThatFailsIsReportedAsATrap)
{
    ofType("TMP");
    robot.leaf("DwaLocalPlanner").fails();
    robot.leaf("PromptInVirtualWall").succeeds();
    robot.leaf("SensorProbeBump").fills("out_str", "PolygonTrap");
    robot.tree("NavigateFollowWall").fails();
    EXPECT_EQ(robot.finish("CrossBridge", 100), FAILURE);
    EXPECT_TRUE(robot.started(5, "DwaLocalPlanner")) << "five tries";
    EXPECT_TRUE(robot.keysAre("polygon_vw_trapped have_trapped_type"));
    EXPECT_TRUE(robot.notAsked("CutdownBridges")) << "it was a bridge for this once";

    robot.leaf("SensorProbeBump").fills("out_str", "");
    EXPECT_EQ(robot.finish(100), FAILURE);
    EXPECT_FALSE(robot.has("automode_trapped")) << "a second trap is not told";
    robot.erase("have_trapped_type");
    EXPECT_EQ(robot.finish(100), FAILURE);
    EXPECT_TRUE(robot.has("automode_trapped"));
}

TEST_F(Bridge, OverAStepIsAcrossWhenNearerToTheFarEnd)
{
    robot.leaf("IsCrossingStep").succeeds();
    robot.leaf("NeedToModifyBridge").fills("o_modified_from_pt", 1010).fills("o_modified_to_pt", 1590);
    robot.tree("NaviOnePointProc").succeeds();
    robot.tree("NaviOnePointProc")
        .provided([](const Moment& now) { return now.keys.get<int>("navi_target_point") == 1590; })
        .decides([](const Moment& now) {
            now.set("current_pose", now.keys.get<int>("lands_at"));
            now.set("tries", now.keys.get<int>("tries") + 1);
            return FAILURE;
        });
    robot.set("tries=0 lands_at=1380");
    EXPECT_EQ(robot.finish("CrossBridge", 50), SUCCESS) << "380 mm behind, 220 mm to go";
    EXPECT_TRUE(robot.has("step_bridge_valid"));
    EXPECT_TRUE(robot.asked("UpdateStepBridge bridge_to=1380"));
    EXPECT_EQ(robot.key("tries"), "2");

    robot.set("-step_bridge_valid lands_at=1370");
    robot.forget();
    EXPECT_EQ(robot.finish(50), FAILURE);
    EXPECT_TRUE(robot.asked("InvalidStepBridge | Back2cm"));
    EXPECT_TRUE(robot.keysAre("step_bridge_invalid -step_bridge_valid"));
    EXPECT_TRUE(robot.notAsked("CutdownBridges"));
}

}  // namespace
}  // namespace vemra::test
