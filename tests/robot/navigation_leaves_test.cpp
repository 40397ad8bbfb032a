#include <algorithm>
#include <chrono>

#include "robot/navigation_rig.h"

namespace vemra::robot {
namespace {

// Two rooms of 1.5 m; the gap between them is one cell too narrow by the map.
std::vector<std::string> roomsWithGap()
{
    std::vector<std::string> lines = room(62, 32);
    fill(lines, {30, 1}, {31, 30}, '#');
    fill(lines, {30, 10}, {31, 15}, '.');
    return lines;
}

constexpr PoseMm kLeft{{500, 900}, {0}};
constexpr PointMm kRight{2500, 900};

struct LeavesTest : testing::Test
{
    LeavesTest() { robot.knowHome(); }

    std::optional<PointMm> point(const std::string& key) const { return pointOf(*robot.blackboard, key); }
    bool searchTolerating(int failures)
    {
        return robot.search("Origin", kRight, "navi_target_point", failures);
    }
    // Takes the plan up to its bridge, which ends well or not.
    void crossBridge(bool well)
    {
        robot.takeUp();
        robot.takeUp();
        robot.set(well ? "cross_bridge_success" : "-cross_bridge_success");
        EXPECT_TRUE(robot.passes("UpdateBridgeCost"));
    }

    NavigationRig robot{sketch(roomsWithGap()), kLeft};
};

TEST_F(LeavesTest, ThresholdsAreInMmOrCellsAndTheUnusedOneIsNegative)
{
    robot.blackboard->set("line", SegmentMm{{0, 0}, {1000, 0}});
    const auto nearLine = [&](const std::string& mm, const std::string& cells) {
        return robot.passes("IsPointCloseToLine line=${line} point=400;150 threshold_mm=" + mm +
                            " threshold_grid=" + cells);
    };
    EXPECT_TRUE(nearLine("150", "-1"));
    EXPECT_FALSE(nearLine("-1", "1"));
    EXPECT_TRUE(nearLine("-1", "3"));
    EXPECT_FALSE(nearLine("-1", "-1"));
}

TEST_F(LeavesTest, APlanIsHandedOutSegmentBySegment)
{
    EXPECT_FALSE(robot.takeUp()) << "no plan yet";
    ASSERT_TRUE(robot.search("TargetNoUnknown", kRight));
    ASSERT_TRUE(robot.takeUp());
    EXPECT_TRUE(robot.passes("PathSegIsVector"));
    EXPECT_TRUE(robot.keysAre("trial_bridge_next_to_this_vector=true -navigation_bridge"));
    const auto before_gap = point("navi_path_target");
    EXPECT_TRUE(robot.passes("PathSegHasTrialBridge input_navi_path=${navigation_path_segments}"));

    ASSERT_TRUE(robot.takeUp());
    EXPECT_FALSE(robot.passes("PathSegIsVector"));
    EXPECT_TRUE(robot.takeBridge());
    EXPECT_EQ(point("from"), before_gap);
    EXPECT_GT(point("to")->x, 1600);
    EXPECT_TRUE(robot.passes("BridgeValid bridge=${navigation_bridge}"));

    ASSERT_TRUE(robot.takeUp());
    EXPECT_TRUE(robot.passes("PathSegIsVector"));
    EXPECT_THAT(point("navi_path_target"), Optional(kRight));
    EXPECT_EQ(robot.text("trial_bridge_next_to_this_vector"), "false");
    EXPECT_FALSE(robot.takeUp()) << "that was all";
    ASSERT_TRUE(robot.search("TargetNoUnknown", kRight));
    EXPECT_TRUE(robot.takeUp()) << "a new plan begins at its beginning";
}

TEST_F(LeavesTest, APlanCanBeShownAndWrittenAsText)
{
    ASSERT_TRUE(robot.search("TargetNoUnknown", kRight));
    const std::string whole = robot.text("navigation_path_segments");
    EXPECT_THAT(whole, AllOf(HasSubstr(" | TRIALNOTRACE;"), EndsWith(";2500;900")));
    ASSERT_TRUE(robot.takeUp());
    const std::string rest = robot.text("navigation_path_segments");
    EXPECT_THAT(rest, StartsWith("TRIALNOTRACE;")) << "what is left of it";
    ASSERT_TRUE(robot.takeUp());
    const std::string bridge = robot.text("navigation_bridge");
    EXPECT_EQ(rest.substr(0, rest.find(" | ")), bridge);

    robot.blackboard->set("navigation_path_segments", rest);
    ASSERT_TRUE(robot.takeUp());
    EXPECT_FALSE(robot.passes("PathSegIsVector"));
    EXPECT_EQ(robot.text("navigation_bridge"), bridge);
    ASSERT_TRUE(robot.takeUp()) << "the next one, not the first again";
    EXPECT_THAT(point("navi_path_target"), Optional(kRight));
    EXPECT_FALSE(robot.takeUp());
    for (const char* no_plan :
         {"", "500", "500;900;1200", "BOAT;500;900;1200;900", "HISTORY;500;900", "500;900 | "}) {
        robot.blackboard->set("navigation_path_segments", no_plan);
        EXPECT_FALSE(robot.takeUp()) << no_plan;
    }

    robot.blackboard->set("line", "0;0;1000;0");
    EXPECT_TRUE(robot.passes("GetMidPointOfLine line=${line} out_point=middle"));
    EXPECT_EQ(robot.text("middle"), "500;0");
    robot.passes("MakeMap");
    EXPECT_THAT(robot.text("obstacle_expanded_map"), HasSubstr(" cells from "));
}

TEST_F(LeavesTest, ABridgeThatFailedServesOnlyWhoToleratesThat)
{
    ASSERT_TRUE(searchTolerating(0));
    crossBridge(false);
    EXPECT_FALSE(searchTolerating(0));
    ASSERT_TRUE(searchTolerating(1));
    EXPECT_EQ(robot.blackboard->get<int>("path_bridge_max_failure_cnt"), 1);
    crossBridge(true);
    EXPECT_TRUE(searchTolerating(0)) << "as good as any";
    crossBridge(false);
    EXPECT_FALSE(searchTolerating(0));
    robot.passes("ValidateAllBridges");
    EXPECT_TRUE(searchTolerating(0));
}

TEST_F(LeavesTest, ABridgeStaysInHandWhateverTheCrossingDoesToItsKey)
{
    ASSERT_TRUE(searchTolerating(0));
    robot.takeUp();
    robot.takeUp();
    ASSERT_TRUE(robot.takeBridge());
    robot.passes("ResetBridgeList");
    EXPECT_FALSE(robot.blackboard->contains("navigation_bridge"));
    robot.passes("UpdateBridgeCost");
    EXPECT_FALSE(searchTolerating(0)) << "the failure is booked";

    // What was booked is out of hand.
    robot.passes("ValidateAllBridges");
    robot.passes("UpdateBridgeCost");
    EXPECT_TRUE(searchTolerating(0));
}

TEST_F(LeavesTest, AStepIsTakenFromThenOnWhereItWasCrossed)
{
    const auto better = [&](const std::string& from, const std::string& to) {
        return robot.passes("NeedToModifyBridge i_bridge_from_pt=" + from + " i_bridge_to_pt=" + to +
                            " o_modified_from_pt=new_from o_modified_to_pt=new_to");
    };
    const auto crossed = [&](const std::string& from, const std::string& to) {
        robot.passes("UpdateStepBridge origin_bridge=STEP;900;900;1900;900 bridge_from=" + from +
                     " bridge_to=" + to);
    };
    EXPECT_FALSE(better("900;900", "1900;900"));
    crossed("950;920", "1880;900");
    EXPECT_FALSE(better("900;900", "1900;900")) << "about as told";
    crossed("950;920", "1600;900");
    EXPECT_TRUE(better("900;900", "1900;900"));
    EXPECT_THAT(point("new_from"), Optional(PointMm{950, 920}));
    EXPECT_THAT(point("new_to"), Optional(PointMm{1600, 900}));
    EXPECT_TRUE(better("1900;900", "900;900")) << "the other way round";
    EXPECT_THAT(point("new_from"), Optional(PointMm{1600, 900}));
    EXPECT_FALSE(better("900;1300", "1900;1300")) << "another step";

    robot.passes("InvalidStepBridge i_bridge=STEP;900;900;1900;900");
    EXPECT_FALSE(better("900;900", "1900;900"));
}

TEST(TemporaryBridge, IsCrossedAsSoonAsTheBodyIsOutOfTheVirtualWall)
{
    NavigationRig robot{NavigationRig::flat(), {{2500, 2600}, {0}}};
    robot.knowHome();
    robot.drawWalls("virtual_wall_rects=2200;2200;3200;3000");
    ASSERT_TRUE(robot.search("Target", {5700, 1200}));
    ASSERT_TRUE(robot.takeUp() && robot.takeBridge());
    // A follow within the crossing; then the plan goes on from outside.
    robot.passes("ResetBridgeList");
    const std::string across = "BridgeCrossed bridge_to_point=5700;1200 ticks_threshold=0";
    EXPECT_FALSE(robot.passes(across));
    robot.carryTo({{4000, 2600}, {0}});
    EXPECT_TRUE(robot.passes(across)) << "however far the goal is";

    robot.set("-cross_bridge_success");
    robot.passes("UpdateBridgeCost");
    EXPECT_TRUE(robot.keysAre("tmp_bridge_cross_failed"));
}

TEST_F(LeavesTest, AFailedSearchIsNotRepeatedUntilSomethingHasChanged)
{
    const auto took = [&] {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_FALSE(searchTolerating(0));
        return std::chrono::steady_clock::now() - start;
    };
    robot.drawWalls("virtual_wall_lines=1300;0;1300;1600");
    const auto first = took();
    auto again = took();
    for (int i = 0; i < 20; ++i)
        again = std::min(again, took());
    EXPECT_LT(again, first / 3);

    robot.switches.open(this, "VirtualWall", false, false);
    EXPECT_TRUE(searchTolerating(0)) << "the wall does not count";
    robot.switches.close(this);
    took();
    robot.drawWalls("virtual_wall_lines=");
    EXPECT_TRUE(searchTolerating(0)) << "it is gone";
    crossBridge(false);
    took();
    EXPECT_TRUE(searchTolerating(1));
    took();
    robot.passes("ValidateAllBridges");
    EXPECT_TRUE(searchTolerating(0));
    EXPECT_FALSE(robot.happened("beyond the map"));
}

TEST_F(LeavesTest, NoWayLeadsThroughALineThatTheUserDrew)
{
    const auto draw = [&](const char* line) {
        robot.blackboard->set("virtual_wall_lines", line);
        robot.passes("GenerateVirtualWalls");
    };
    ASSERT_TRUE(searchTolerating(0));
    draw("1550;400;1550;1000");
    EXPECT_FALSE(searchTolerating(0)) << "it bars the gap, in which there is no room to stand";
    // So near to a line that it stands in its wall, the robot leaves that to its own side.
    draw("1100;0;1100;1600");
    for (const double x : {940.0, 1260.0}) {
        robot.body.carryTo({{x, 900}, {0}});
        robot.frame();
        EXPECT_EQ(robot.search("Target", {500, 900}), x < 1100) << x;
        EXPECT_EQ(robot.search("Target", {1285, 300}), x > 1100) << x;
    }
    draw("1100;700;1100;1600");
    EXPECT_TRUE(robot.search("Target", {500, 900})) << "round its end";
    draw("250;0;250;1600");
    robot.body.carryTo({{225, 900}, {0}});
    robot.frame();
    EXPECT_TRUE(robot.search("Target", {500, 900})) << "on the other side there is no room";
    draw("700;500;1500;1300");
    robot.body.carryTo({{1110, 900}, {0}});
    robot.frame();
    EXPECT_TRUE(robot.search("Target", {500, 1300})) << "who stands on the line goes to either side";
    EXPECT_TRUE(robot.search("Target", {1285, 500}));
}

TEST_F(LeavesTest, AGoalBeyondTheMapIsRefusedWithAWord)
{
    const auto words = [&] {
        return std::count_if(robot.log.begin(), robot.log.end(), [](const std::string& entry) {
            return entry.find("beyond the map") != std::string::npos;
        });
    };
    EXPECT_FALSE(robot.search("Target", {12000, 900}));
    EXPECT_TRUE(robot.happened("no way to 12000;900: the goal lies beyond the map seen so far"));
    robot.frames(60);
    EXPECT_FALSE(robot.search("Target", {12000, 900}));
    EXPECT_EQ(words(), 1) << "once is enough";
    EXPECT_FALSE(robot.search("Target", {-9000, 900}));
    EXPECT_EQ(words(), 2);
}

TEST_F(LeavesTest, ASearchDuringAFollowWantsTheGoalWhateverWasSearchedBefore)
{
    robot.set("navi_followwall_mode=TargetNoUnknown");
    const std::string block =
        "AwesomeSearch search_mode=Block source_point=${current_coord} target=500;300 output_point=found "
        "target_mode=${target_mode}";
    robot.passes(block);
    EXPECT_THAT(point("found"), Not(Optional(PointMm{500, 300})));
    robot.set("target_mode=true");
    EXPECT_TRUE(robot.passes(block));
    EXPECT_THAT(point("found"), Optional(PointMm{500, 300}));
    EXPECT_EQ(robot.text("awesome_search_mode"), "Block");
}

TEST_F(LeavesTest, TheTrackGivesPlacesThatAreStillClear)
{
    robot.drive({200, 200}, 200);
    const PointMm spot{800, 900};
    const auto awayOfNearest = [&](const std::string& kind) {
        EXPECT_TRUE(robot.passes("FindNearestInTrajectory start_from=800;900 search_for=" + kind +
                                 " out_point_grid=found"));
        return distance(*point("found"), spot);
    };
    EXPECT_LT(awayOfNearest("clear"), 50);
    // A virtual wall is nothing to the laser.
    robot.drawWalls("virtual_wall_rects=750;700;850;1100");
    EXPECT_LT(awayOfNearest("slamclear"), 50);
    EXPECT_GE(awayOfNearest("clear"), 50 + kRobotRadiusMm - kCellMm / 2);
    ASSERT_TRUE(robot.passes("FindLastInTrajectory search_for=clear out_point_grid=last"));
    EXPECT_LT(distance(*point("last"), robot.map.pose().at), 50);
    // A search keeps out of it unless the sensor is off.
    ASSERT_TRUE(robot.search("TargetNoUnknown", spot, "found"));
    EXPECT_GT(distance(*point("found"), spot), 150);
    robot.switches.open(this, "PolygonVirtualWall", false, false);
    ASSERT_TRUE(robot.search("TargetNoUnknown", spot, "found"));
    EXPECT_THAT(point("found"), Optional(spot));
}

TEST_F(LeavesTest, LooksAtTheMap)
{
    const auto clear = [&](const std::string& to) {
        return robot.passes("IsPathClear from_point=${current_pose} to_point=" + to + " is_explore=true");
    };
    EXPECT_TRUE(clear("1200;900"));
    EXPECT_FALSE(clear("2500;1300")) << "a wall";
    const auto shutIn = [&](const std::string& threshold) {
        return robot.passes("AreaCheck source_point=${current_coord} threshold=" + threshold);
    };
    EXPECT_FALSE(shutIn("400"));
    EXPECT_TRUE(shutIn("600")) << "one room has 552 cells to stand on";

    robot.blackboard->set("navi_target_point", kRight);
    ASSERT_TRUE(robot.passes("FindNearestTarget"));
    EXPECT_THAT(point("navi_target_point")->x, AllOf(Lt(1500), Gt(1200)));
}

TEST_F(LeavesTest, ALockedDrawModeHoldsAgainstInnerSteps)
{
    const auto lock = robot.make("SetMapDrawMode draw_mode=BlockOnly LockState=true");
    EXPECT_EQ(lock->executeTick(), NodeStatus::RUNNING);
    EXPECT_TRUE(robot.passes("SetMapDrawMode draw_mode=None"));
    EXPECT_EQ(robot.map.drawMode(), DrawMode::BlockOnly);
    BT::haltNode(*lock);
    EXPECT_EQ(robot.map.drawMode(), DrawMode::Everything);
    EXPECT_EQ(robot.text("current_draw_mode"), "Default");
    EXPECT_TRUE(robot.passes("SetMapDrawMode draw_mode=None LockState=false"));
    EXPECT_EQ(robot.map.drawMode(), DrawMode::Nothing);
    EXPECT_FALSE(robot.passes("SetMapDrawMode draw_mode=Sometimes"));
}

TEST_F(LeavesTest, AHaltedDriveStops)
{
    robot.set("there=1200;900");
    ASSERT_TRUE(robot.search("Target", {1200, 900}));
    robot.takeUp();
    for (const char* leaf :
         {"DwaLocalPlanner path=${navigation_path}", "NaviOnePoint target_point=${there}"}) {
        const auto drive = robot.make(leaf);
        for (int i = 0; i < 50; ++i) {
            robot.frame();
            EXPECT_EQ(drive->executeTick(), NodeStatus::RUNNING);
        }
        EXPECT_FALSE(robot.body.commanded() == WheelSpeeds{});
        BT::haltNode(*drive);
        EXPECT_EQ(robot.body.commanded(), WheelSpeeds{});
    }
    EXPECT_FALSE(robot.passes("NaviOnePoint target_point=${nowhere}"));
    EXPECT_FALSE(robot.passes("DwaLocalPlanner path=${nowhere}"));
}

TEST_F(LeavesTest, ASecondPassKeepsTheWallsAndForgetsWhatWasSwept)
{
    const auto knowsFloor = [&] { return robot.map.occupancy().at(cellAt({1200, 900})) == CellState::Free; };
    const auto sweep = [&] {
        robot.map.cleaned().follow({{500, 900}, {0}}, true);
        robot.map.cleaned().follow({{520, 900}, {0}}, true);
        return robot.map.cleaned().areaM2() > 0;
    };
    ASSERT_TRUE(knowsFloor());
    ASSERT_TRUE(sweep());
    robot.set("reset_map_remain_submap=true");
    ASSERT_TRUE(robot.passes("ResetMap"));
    EXPECT_TRUE(knowsFloor());
    EXPECT_EQ(robot.map.cleaned().areaM2(), 0);

    ASSERT_TRUE(sweep());
    robot.set("-reset_map_remain_submap");
    ASSERT_TRUE(robot.passes("ResetMap"));
    EXPECT_FALSE(knowsFloor());
    EXPECT_EQ(robot.map.cleaned().areaM2(), 0);
}

}  // namespace
}  // namespace vemra::robot
