#include <gmock/gmock.h>

#include "robot/navigation_rig.h"

namespace vemra::robot {
namespace {

using testing::Optional;

const std::string kTrees = VEMRA_LIB_DIR "/libvemra_tree.so";

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
    bool takeUp()
    {
        return robot.passes("CheckPathSegment", {{"input_navi_path", "${navigation_path_segments}"}});
    }
    bool searchTolerating(int failures)
    {
        robot.blackboard->set("wanted", kRight);
        return robot.passes("AwesomeSearch", {{"search_mode", "Origin"},
                                              {"source_point", "${current_coord}"},
                                              {"target", "${wanted}"},
                                              {"region", "${gridmap_limit}"},
                                              {"output_point", "navi_target_point"},
                                              {"failure_tolerance", std::to_string(failures)}});
    }
    int worstBridge() const { return robot.blackboard->get<int>("path_bridge_max_failure_cnt"); }

    NavigationRig robot{sketch(roomsWithGap()), kLeft, kTrees};
};

TEST_F(LeavesTest, PlacesAreReadInWhateverFormTheyWereWritten)
{
    BT::Blackboard& keys = *robot.blackboard;
    keys.set("pose", PoseMm{{1000, 2000}, {90}});
    keys.set("cell", CellIndex{-1, 2});
    keys.set("text", "1000;-40");
    keys.set("wrong", "1000");
    EXPECT_THAT(point("pose"), Optional(PointMm{1000, 2000}));
    EXPECT_THAT(point("cell"), Optional(PointMm{-25, 125}));
    EXPECT_THAT(point("text"), Optional(PointMm{1000, -40}));
    EXPECT_FALSE(point("wrong"));
    EXPECT_FALSE(point("missing"));
    EXPECT_EQ(robot.text("pose"), "1000;2000;90");
    EXPECT_EQ(poseOf(keys, "text")->yaw.value, 0);
    keys.set("box", "400;0;-100;50");
    EXPECT_THAT(boxOf(keys, "box"), Optional(BoxMm{{-100, 0}, {400, 50}}));
}

TEST_F(LeavesTest, PointsAreMeasuredShiftedAndFramed)
{
    BT::Blackboard& keys = *robot.blackboard;
    keys.set("a", PoseMm{{0, 0}, {0}});
    keys.set("b", PointMm{300, 400});
    const auto tooClose = [&](const char* mm) {
        return robot.passes("ArePointsTooClose",
                            {{"distance_mm", mm}, {"point_mm_a", "${a}"}, {"point_mm_b", "${b}"}});
    };
    EXPECT_TRUE(tooClose("500"));
    EXPECT_FALSE(tooClose("499"));
    keys.erase("b");
    EXPECT_FALSE(tooClose("500")) << "no place is near nothing";
    keys.set("b", PointMm{300, 400});
    EXPECT_TRUE(robot.passes("PointToPointDist",
                             {{"point_mm_a", "${a}"}, {"point_mm_b", "${b}"}, {"dist_mm", "way"}}));
    EXPECT_EQ(keys.get<double>("way"), 500);
    EXPECT_TRUE(
        robot.passes("CoordOffset", {{"base_point", "${b}"}, {"offset_mm", "-1000;0"}, {"out_point", "c"}}));
    EXPECT_THAT(point("c"), Optional(PointMm{-700, 400}));
    EXPECT_TRUE(robot.passes("GeneratePointCenteredRectMm",
                             {{"center", "${b}"}, {"half_size_mm", "1000"}, {"out_rect", "limit"}}));
    const auto inside = [&](const char* place) {
        return robot.passes("IsPointInRectangle", {{"point", place}, {"rectangle", "${limit}"}});
    };
    EXPECT_TRUE(inside("1300;-600"));
    EXPECT_FALSE(inside("1301;0"));
    EXPECT_TRUE(robot.passes("PlainPoseMmSetYaw", {{"key", "a"}, {"yaw_deg", "45"}}));
    EXPECT_EQ(poseOf(keys, "a")->yaw.value, 45);
}

TEST_F(LeavesTest, LinesAreTakenApartAndComparedInMmOrCells)
{
    robot.blackboard->set("line", SegmentMm{{0, 0}, {1000, 0}});
    EXPECT_TRUE(robot.passes("LineDestructor", {{"line_mm", "${line}"}, {"out_point_1", "end"}}));
    EXPECT_THAT(point("end"), Optional(PointMm{1000, 0}));
    const auto close = [&](const char* place, const char* mm, const char* cells) {
        return robot.passes(
            "IsPointCloseToLine",
            {{"line", "${line}"}, {"point", place}, {"threshold_mm", mm}, {"threshold_grid", cells}});
    };
    EXPECT_TRUE(close("400;150", "150", "-1"));
    EXPECT_FALSE(close("400;150", "-1", "1"));
    EXPECT_TRUE(close("400;150", "-1", "3"));
    EXPECT_FALSE(close("400;150", "-1", "-1"));
    EXPECT_TRUE(robot.passes("IsPointInSegment", {{"line", "${line}"}, {"point", "900;5000"}}));
    EXPECT_FALSE(robot.passes("IsPointInSegment", {{"line", "${line}"}, {"point", "1100;0"}}));
    EXPECT_TRUE(robot.passes("IsLineTooShort",
                             {{"line", "${line}"}, {"threshold_grid", "20"}, {"threshold_mm", "-1"}}));
    EXPECT_FALSE(robot.passes("IsLineTooShort",
                              {{"line", "${line}"}, {"threshold_grid", "-1"}, {"threshold_mm", "999"}}));
}

TEST_F(LeavesTest, APlanIsHandedOutSegmentBySegment)
{
    EXPECT_FALSE(takeUp()) << "no plan yet";
    ASSERT_TRUE(robot.search("TargetNoUnknown", kRight));
    EXPECT_EQ(robot.text("awesome_search_mode"), "TargetNoUnknown");
    EXPECT_TRUE(boxOf(*robot.blackboard, "awesome_search_region"));
    EXPECT_GT(robot.blackboard->get<int>("path_length_grid"), 35);

    ASSERT_TRUE(takeUp());
    EXPECT_TRUE(robot.passes("PathSegIsVector"));
    EXPECT_EQ(robot.text("trial_bridge_next_to_this_vector"), "true");
    EXPECT_FALSE(robot.blackboard->contains("navigation_bridge"));
    const auto before_gap = point("navi_path_target");
    EXPECT_TRUE(robot.passes("PathSegHasTrialBridge", {{"input_navi_path", "${navigation_path_segments}"}}));

    ASSERT_TRUE(takeUp());
    EXPECT_FALSE(robot.passes("PathSegIsVector"));
    EXPECT_TRUE(robot.passes("BridgeDestructor", {{"bridge", "${navigation_bridge}"},
                                                  {"out_from_point", "from"},
                                                  {"out_to_point", "to"},
                                                  {"out_follow_wall_dist", "follow"}}));
    EXPECT_EQ(point("from"), before_gap);
    EXPECT_GT(point("to")->x, 1600);
    EXPECT_TRUE(robot.passes("BridgeValid", {{"bridge", "${navigation_bridge}"}}));

    ASSERT_TRUE(takeUp());
    EXPECT_TRUE(robot.passes("PathSegIsVector"));
    EXPECT_THAT(point("navi_path_target"), Optional(kRight));
    EXPECT_EQ(robot.text("trial_bridge_next_to_this_vector"), "false");
    EXPECT_FALSE(takeUp()) << "that was all";
    ASSERT_TRUE(robot.search("TargetNoUnknown", kRight));
    EXPECT_TRUE(takeUp()) << "a new plan begins at its beginning";
}

TEST_F(LeavesTest, ABridgeThatFailedServesOnlyWhoToleratesThat)
{
    ASSERT_TRUE(searchTolerating(0));
    EXPECT_EQ(worstBridge(), 0);
    takeUp();
    takeUp();
    ASSERT_TRUE(robot.passes("UpdateBridgeCost"));
    EXPECT_FALSE(searchTolerating(0));
    ASSERT_TRUE(searchTolerating(1));
    EXPECT_EQ(worstBridge(), 1);
    // Crossed after all, it is as good as any.
    takeUp();
    takeUp();
    robot.blackboard->set("cross_bridge_success", "");
    ASSERT_TRUE(robot.passes("UpdateBridgeCost"));
    EXPECT_TRUE(searchTolerating(0));
    robot.blackboard->erase("cross_bridge_success");
    takeUp();
    takeUp();
    robot.passes("UpdateBridgeCost");
    EXPECT_FALSE(searchTolerating(0));
    robot.passes("ValidateAllBridges");
    EXPECT_TRUE(searchTolerating(0));
}

TEST_F(LeavesTest, ASearchDuringAFollowWantsTheGoalWhateverWasSearchedBefore)
{
    robot.blackboard->set("wanted", PointMm{500, 300});
    robot.blackboard->set("navi_followwall_mode", "TargetNoUnknown");
    const BT::NodeParameters block{{"search_mode", "Block"},
                                   {"source_point", "${current_coord}"},
                                   {"target", "${wanted}"},
                                   {"output_point", "found"},
                                   {"target_mode", "${target_mode}"}};
    EXPECT_FALSE(robot.passes("AwesomeSearch", block));
    robot.blackboard->set("target_mode", true);
    EXPECT_TRUE(robot.passes("AwesomeSearch", block));
    EXPECT_THAT(point("found"), Optional(PointMm{500, 300}));
    EXPECT_EQ(robot.text("awesome_search_mode"), "Block");
}

TEST_F(LeavesTest, TheTrackGivesPlacesThatAreStillClear)
{
    robot.body.drive({200, 200});
    for (int i = 0; i < 200; ++i) {
        robot.frame();
    }
    const PointMm spot{800, 900};
    const auto awayOfNearest = [&](const char* kind) {
        EXPECT_TRUE(
            robot.passes("FindNearestInTrajectory",
                         {{"start_from", "800;900"}, {"search_for", kind}, {"out_point_grid", "found"}}));
        return distance(*point("found"), spot);
    };
    EXPECT_LT(awayOfNearest("slamclear"), 50);
    EXPECT_LT(awayOfNearest("clear"), 50);
    // A virtual wall is nothing to the laser.
    robot.blackboard->set("virtual_wall_rects", "750;700;850;1100");
    robot.passes("GenerateVirtualWalls");
    EXPECT_LT(awayOfNearest("slamclear"), 50);
    EXPECT_GE(awayOfNearest("clear"), 50 + kRobotRadiusMm - kCellMm / 2);
    ASSERT_TRUE(robot.passes("FindLastInTrajectory", {{"search_for", "clear"}, {"out_point_grid", "last"}}));
    EXPECT_LT(distance(*point("last"), robot.map.pose().at), 50);
    ASSERT_TRUE(robot.passes("GetRobotTrajectorySize", {{"out_size", "size"}}));
    EXPECT_GT(robot.blackboard->get<int>("size"), 10);
    // A search keeps out of it unless the sensor is off.
    ASSERT_TRUE(robot.search("TargetNoUnknown", spot, "found"));
    EXPECT_GT(distance(*point("found"), spot), 150);
    robot.switches.open(this, "PolygonVirtualWall", false, false);
    ASSERT_TRUE(robot.search("TargetNoUnknown", spot, "found"));
    EXPECT_THAT(point("found"), Optional(spot));
}

TEST_F(LeavesTest, ALockedDrawModeHoldsAgainstInnerSteps)
{
    const std::shared_ptr<BT::TreeNode> lock = robot.factory.instantiateTreeNode(
        "SetMapDrawMode", "lock", {{"draw_mode", "BlockOnly"}, {"LockState", "true"}}, robot.blackboard);
    EXPECT_EQ(lock->executeTick(), BT::NodeStatus::RUNNING);
    EXPECT_TRUE(robot.passes("SetMapDrawMode", {{"draw_mode", "None"}}));
    EXPECT_EQ(robot.map.drawMode(), DrawMode::BlockOnly);
    BT::haltNode(*lock);
    EXPECT_EQ(robot.map.drawMode(), DrawMode::Everything);
    EXPECT_EQ(robot.text("current_draw_mode"), "Default");
    EXPECT_TRUE(robot.passes("SetMapDrawMode", {{"draw_mode", "None"}, {"LockState", "false"}}));
    EXPECT_EQ(robot.map.drawMode(), DrawMode::Nothing);
    EXPECT_FALSE(robot.passes("SetMapDrawMode", {{"draw_mode", "Sometimes"}}));
}

TEST_F(LeavesTest, AHaltedDriveStops)
{
    robot.blackboard->set("there", PointMm{1200, 900});
    ASSERT_TRUE(robot.search("Target", {1200, 900}));
    takeUp();
    for (const BT::NodeParameters& ports : {BT::NodeParameters{{"path", "${navigation_path}"}},
                                            BT::NodeParameters{{"target_point", "${there}"}}}) {
        const std::string id = ports.contains("path") ? "DwaLocalPlanner" : "NaviOnePoint";
        const std::shared_ptr<BT::TreeNode> drive =
            robot.factory.instantiateTreeNode(id, id, ports, robot.blackboard);
        for (int i = 0; i < 50; ++i) {
            robot.frame();
            EXPECT_EQ(drive->executeTick(), BT::NodeStatus::RUNNING);
        }
        EXPECT_FALSE(robot.body.commanded() == WheelSpeeds{});
        BT::haltNode(*drive);
        EXPECT_EQ(robot.body.commanded(), WheelSpeeds{});
    }
    EXPECT_FALSE(robot.passes("NaviOnePoint", {{"target_point", "${nowhere}"}}));
    EXPECT_FALSE(robot.passes("DwaLocalPlanner", {{"path", "${nowhere}"}}));
}

TEST_F(LeavesTest, LooksAtTheMap)
{
    const auto clear = [&](const char* to, const char* explore) {
        return robot.passes("IsPathClear",
                            {{"from_point", "${current_pose}"}, {"to_point", to}, {"is_explore", explore}});
    };
    EXPECT_TRUE(clear("1200;900", "true"));
    EXPECT_FALSE(clear("2500;1300", "true")) << "a wall";
    const auto shutIn = [&](const char* threshold) {
        return robot.passes("AreaCheck", {{"source_point", "${current_coord}"}, {"threshold", threshold}});
    };
    EXPECT_FALSE(shutIn("400"));
    EXPECT_TRUE(shutIn("600")) << "one room has 552 cells to stand on";

    robot.blackboard->set("hit", PoseMm{{1300, 1300}, {0}});
    ASSERT_TRUE(robot.passes("MoveThroughWalls", {{"pose", "${hit}"}, {"out_point", "behind"}}));
    EXPECT_GT(point("behind")->x, 1600 + kRobotRadiusMm - kCellMm);
    robot.blackboard->set("hit", PoseMm{{300, 900}, {180}});
    EXPECT_FALSE(robot.passes("MoveThroughWalls", {{"pose", "${hit}"}, {"out_point", "behind"}}));

    robot.blackboard->set("navi_target_point", kRight);
    ASSERT_TRUE(robot.passes("FindNearestTarget"));
    EXPECT_LT(point("navi_target_point")->x, 1500);
    EXPECT_GT(point("navi_target_point")->x, 1200);
}

}  // namespace
}  // namespace vemra::robot
