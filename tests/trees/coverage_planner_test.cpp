#include <string>
#include <vector>

#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

/// A part of the floor with nothing to do in it: no chain, no block, no line. Points are numbers.
struct PartOfTheFloor : RobotOnALine
{
    PartOfTheFloor()
    {
        robot.set("current_pose=0 current_coord=0 navi_target_point=0 current_subregion=part");
        robot.set("chain_layer_id=0 map_mask=0");
        robot.succeed("InCurrentSubregion | FarFromVirtualBound | MarkChainCheckOverlap | NotTrapped");
        robot.fail("AwesomeSearch | PlanNextLine");
        robot.textsAsTheyStand();
        robot.succeed(
            "Back2cm | Escape | FixOrientation | NaviOnePointProc | NavigateFollowWall | FollowWallProc");
        robot.tree("NavigateProc").decides([this](const Moment&) {
            drives_for.push_back(robot.key("trace_token").value_or(""));
            return SUCCESS;
        });
        robot.leaf("LineDestructor").fills("out_point_0", 1000).fills("out_point_1", 3000);
    }

    Answer& search(const std::string& mode) { return robot.leaf("AwesomeSearch").where("search_mode", mode); }

    /// So many lines, which the drive to their start reaches.
    void lines(int count)
    {
        robot.leaf("PlanNextLine").decides([left = count](const Moment&) mutable {
            return left-- > 0 ? SUCCESS : FAILURE;
        });
        search("TargetGong").succeeds();
    }

    /// The drive along a line meets something.
    void meetOnLine(const std::string& side)
    {
        robot.tree("FixOrientation").decides([side, this](const Moment& now) {
            if (now.tick_of_run < 3)
                return RUNNING;
            robot.set("bump_dir", side);
            return FAILURE;
        });
    }

    NodeStatus clean() { return robot.finish("PlanInSubregion_FollowGong", 500); }

    std::vector<std::string> drives_for;  ///< what the track was told at each drive
};

TEST_F(PartOfTheFloor, WithNothingToDoIsClosedAfterALookFromEachPhase)
{
    EXPECT_EQ(clean(), SUCCESS) << robot.transcript().print();
    EXPECT_TRUE(robot.started(2, "Back2cm | AwesomeSearch search_mode=Chain"));
    EXPECT_TRUE(robot.started(2, "AwesomeSearch search_mode=Block"));
    EXPECT_TRUE(robot.started(1, "PlanNextLine"));
    for (const char* motion : {"NaviOnePointProc", "NavigateFollowWall", "FollowWallProc", "FixOrientation"})
        EXPECT_TRUE(robot.notAsked(motion));
    EXPECT_TRUE(drives_for.empty());
    EXPECT_TRUE(robot.keysAre("-gong_motion_type -followwall_motion_type -need_search_block"));
}

TEST_F(PartOfTheFloor, AHaltKeepsThePhaseAndNotTheSearchForBlocks)
{
    lines(5);
    robot.tree("FixOrientation").runs();
    robot.runUntil("PlanInSubregion_FollowGong", "FixOrientation");
    robot.set("need_search_block", "");
    robot.halt();
    EXPECT_FALSE(robot.has("need_search_block"));
    robot.runUntil("PlanInSubregion_FollowGong", "FixOrientation");
    EXPECT_TRUE(robot.notAsked("AwesomeSearch search_mode=Chain")) << "on with the lines at once";
}

TEST_F(PartOfTheFloor, AThingOnALineIsTracedFromAFreshChain)
{
    lines(2);
    meetOnLine("middle");
    robot.set("current_chain_id", 7);
    robot.leaf("GongNeedFollowWall").inTurn({SUCCESS, FAILURE});
    robot.tree("FollowWallProc").succeedsAfter(5);
    EXPECT_EQ(clean(), SUCCESS) << robot.transcript().print();
    EXPECT_TRUE(
        robot.inOrder("FixOrientation | GongNeedFollowWall | Back2cm | MarkChainCheckOverlap chain_id=0 "
                      "follow_wall_right=true | FollowWallProc | PlanNextLine"));
    EXPECT_EQ(robot.key("finished_gong_follow_wall"), "true");
}

TEST_F(PartOfTheFloor, AThingTracedBeforeIsPassedToAFreshLine)
{
    lines(2);
    meetOnLine("left");
    EXPECT_EQ(clean(), SUCCESS) << robot.transcript().print();
    EXPECT_TRUE(robot.inOrder(
        "FixOrientation | GongNeedFollowWall | PlanNextLine | LineDestructor | NavigateFollowWall"));
    EXPECT_EQ(robot.key("navi_followwall_mode"), "TargetCollision");
    EXPECT_TRUE(robot.notAsked("FollowWallProc"));
    EXPECT_TRUE(robot.started(1, "FixOrientation")) << "the fresh line was given up for the way past";
}

TEST_F(PartOfTheFloor, TheFieldOfTheDockIsNeitherTracedNorPassed)
{
    for (const char* side : {"left_dock", "middle_dock", "right_dock"}) {
        lines(2);
        meetOnLine(side);
        robot.leaf("GongNeedFollowWall").succeeds();
        EXPECT_EQ(clean(), SUCCESS) << side;
        EXPECT_TRUE(robot.started(2, "FixOrientation")) << side;
        EXPECT_TRUE(robot.notAsked("GongNeedFollowWall | FollowWallProc | NavigateFollowWall")) << side;
    }
}

TEST_F(PartOfTheFloor, OnlyAHalfTurnBesideTheStartOfTheLineIsMadeAsAnArc)
{
    // The turn, the foot in millimetres from the start, and the drive: an arc, or what the track is told of
    // it.
    const std::tuple<double, int, const char*> rows[] = {{180, 0, "arc"},
                                                         {176, 0, "arc"},
                                                         {-176, 0, "arc"},
                                                         {184, 0, "arc"},
                                                         {180, 99, "arc"},
                                                         {180, -99, "arc"},
                                                         {175, 0, "AfterFootNavi"},
                                                         {-175, 0, "AfterFootNavi"},
                                                         {90, 0, "AfterFootNavi"},
                                                         {185, 0, "AfterFootNavi"},
                                                         {180, 101, "AfterFootNavi"},
                                                         {180, -499, "AfterFootNavi"},
                                                         {180, 501, ""}};
    robot.leaf("IsPointCloseToLine threshold_grid=3").succeeds();
    for (const auto& [turn, foot, drive] : rows) {
        const std::string what = std::to_string(turn) + " degrees, foot at " + std::to_string(foot);
        lines(1);
        robot.leaf("CalcFootOfPerpendicularThroughPoint").fills("out_point", 1000 + foot);
        robot.leaf("CalcSwitchLineTurnParam").fills("out_angle", turn).fills("out_radius", 75);
        robot.erase("trace_token");
        drives_for.clear();
        EXPECT_EQ(clean(), SUCCESS) << what;
        const bool arc = drive == std::string("arc");
        EXPECT_TRUE(robot.started(arc ? 1 : 0, "TurnAround")) << what;
        EXPECT_EQ(drives_for, arc ? std::vector<std::string>{} : std::vector<std::string>{drive}) << what;
        EXPECT_TRUE(robot.started(1, "FixOrientation")) << what;
    }
}

TEST_F(PartOfTheFloor, AnArcThatTouchesSomethingGivesWayToADrive)
{
    lines(1);
    robot.leaf("IsPointCloseToLine threshold_grid=3").succeeds();
    robot.leaf("CalcFootOfPerpendicularThroughPoint").fills("out_point", 1000);
    robot.leaf("CalcSwitchLineTurnParam").fills("out_angle", 180.0).fills("out_radius", 75);
    robot.leaf("TurnAround").runs();
    robot.leaf("CheckClifBump").inTurn({FAILURE, FAILURE, SUCCESS, FAILURE});
    EXPECT_EQ(clean(), SUCCESS) << robot.transcript().print();
    EXPECT_TRUE(robot.halted("TurnAround"));
    EXPECT_EQ(drives_for, std::vector<std::string>{"SwitchLineNavi"});
    EXPECT_TRUE(robot.started(1, "FixOrientation"));
}

TEST_F(PartOfTheFloor, BlocksWithinTheTracedAreaAreSkippedAndAnEmptyOneClosesItsChain)
{
    for (const bool touches : {false, true}) {
        // Two blocks: one within what was traced, and one outside of it.
        search("Block").decides([n = 0, this](const Moment&) mutable {
            robot.set("navi_target_point", 100);
            robot.set("chain_region_check_point", n == 0 ? 7 : 8);
            return n++ < 2 ? SUCCESS : FAILURE;
        });
        robot.leaf("IsPointInRegionArea src_point=7").succeeds();
        robot.tree("NaviOnePointProc").decides([touches, this](const Moment&) {
            robot.set("bump_dir", touches ? "middle" : "None");
            return touches ? FAILURE : SUCCESS;
        });
        EXPECT_EQ(clean(), SUCCESS) << robot.transcript().print();
        EXPECT_TRUE(robot.said("Block搜索结果在区域链内，无需前往！"));
        EXPECT_TRUE(robot.started(1, "ExtendBlockPoint"));
        EXPECT_TRUE(robot.started(touches ? 0 : 1, "CloseChain"));
        EXPECT_EQ(robot.framesOf("FollowWallProc") > 0, touches);
        EXPECT_FALSE(robot.has("chain_block_fail"));
    }
}

TEST_F(PartOfTheFloor, TheBorderIsTracedUnlessAChainWaits)
{
    robot.leaf("FarFromVirtualBound").fails();
    EXPECT_EQ(clean(), SUCCESS);
    EXPECT_TRUE(robot.asked("SensorTriggerBump sensor=SubregionBorder"));
    robot.leaf("HasOpenChain").succeeds();
    EXPECT_EQ(clean(), SUCCESS);
    EXPECT_TRUE(robot.notAsked("SensorTriggerBump"));
}

TEST_F(PartOfTheFloor, WhenNoGoalIsEverReachedItCloses)
{
    const auto offers = [](int count) {
        return [left = count](const Moment&) mutable { return left-- > 0 ? SUCCESS : FAILURE; };
    };
    robot.set("navi_target_point", 1000);
    search("Chain").decides(offers(3));
    search("Block").decides(offers(3));
    lines(4);
    for (const char* motion : {"NavigateProc", "NavigateFollowWall", "NaviOnePointProc", "FollowWallProc",
                               "FixOrientation", "Back2cm"})
        robot.tree(motion).failsAfter(2);
    robot.leaf("Bumped").fails();
    robot.tree("Back2cm").succeedsAfter(2);
    EXPECT_EQ(clean(), SUCCESS) << robot.transcript().print();
    EXPECT_TRUE(robot.started(0, "FixOrientation"));
    EXPECT_FALSE(robot.has("need_search_block"));
}

TEST_F(PartOfTheFloor, TheWayBackIsTriedThriceAndGivenUpWithoutAGoal)
{
    robot.leaf("InCurrentSubregion").fails();
    EXPECT_EQ(clean(), FAILURE);
    EXPECT_TRUE(robot.started(1, "AwesomeSearch search_mode=Region"));
    search("Region").succeeds();
    robot.fail("NavigateProc | NavigateFollowWall");
    EXPECT_EQ(clean(), FAILURE);
    EXPECT_TRUE(robot.started(3, "AwesomeSearch search_mode=Region | NavigateFollowWall"));
    EXPECT_FALSE(robot.has("return_to_region_abort"));
}

// --- the pass along the walls ---------------------------------------------------------------------

struct WallPass : RobotOnALine
{
    WallPass()
    {
        robot.set("current_pose=0 current_coord=0 navi_target_point=0");
        robot.succeed("GridmapLimitCheck | NotTrapped | IsPointOutOfAllChainRegion | Bumped");
        robot.succeed("MarkChainCheckOverlap");
        robot.leaf("AwesomeSearch").fails();
        robot.leaf("CalcFollowWallFrameOut").fills("out_key", 1000);
        robot.succeed(
            "EscapeCoat | Back2cm | NavigateProc | NaviOnePointProc | NavigateFollowWall | FollowWallProc");
    }
};

TEST_F(WallPass, GoesRoundNoBlockAfterFortyMinutesUnlessWithinARoom)
{
    for (const auto& [seconds, in_room, inner] :
         {std::tuple<int, bool, bool>{2400, false, true}, {2401, false, false}, {2401, true, true}}) {
        for (const char* pass : {"IncreaseCoverage_mod", "IncreaseCoverage"}) {
            robot.set("clean_time_for_app", seconds);
            if (in_room)
                robot.set("skip_followwall_timeout_check", "true");
            EXPECT_EQ(robot.finish(pass, 50), SUCCESS) << pass;
            EXPECT_TRUE(robot.started(inner ? 1 : 0, "AwesomeSearch search_mode=Block"))
                << pass << ' ' << seconds;
            EXPECT_EQ(bool{robot.said("清扫时间大于40分钟，不做内沿边")}, !inner) << pass;
            robot.erase("skip_followwall_timeout_check");
        }
    }
}

TEST_F(WallPass, ASpentBudgetEndsThePieceAndTheStage)
{
    robot.leaf("CalcFollowWallFrameOut").fills("out_key", 40);
    robot.leaf("AwesomeSearch search_mode=Chain").succeeds();
    robot.tree("FollowWallProc").runs();
    EXPECT_EQ(robot.finish("IncreaseCoverage_mod", 100), SUCCESS) << robot.transcript().print();
    EXPECT_TRUE(robot.halted("FollowWallProc"));
    EXPECT_THAT(robot.framesOf("FollowWallProc"), AllOf(Gt(30), Le(41)));
    EXPECT_TRUE(robot.started(1, "AwesomeSearch search_mode=Chain"));
    EXPECT_TRUE(robot.said("总时间超时（外沿边）"));
}

TEST_F(WallPass, ABlockFollowedBeforeIsPassed)
{
    for (const bool followed : {true, false}) {
        robot.leaf("AwesomeSearch search_mode=Block").inTurn({SUCCESS, FAILURE});
        robot.leaf("InFollowWallMarkMap").gives(followed);
        EXPECT_EQ(robot.finish("IncreaseCoverage_mod", 100), SUCCESS);
        EXPECT_TRUE(robot.started(followed ? 1 : 0, "NavigateFollowWall"));
        EXPECT_TRUE(robot.started(followed ? 0 : 1, "FollowWallProc"));
    }
}

}  // namespace
}  // namespace vemra::test
