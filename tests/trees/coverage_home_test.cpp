#include <string>
#include <vector>

#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

/// A robot on the map of a home, with no floor left to clean and a sound way to where it began.
struct HomeToCover : RobotOnALine
{
    HomeToCover()
    {
        robot.set("current_pose=0 current_coord=0 navi_target_point=0 search_target_point=0");
        robot.set("gridmap_limit=home map_mask=0 path_bridge_max_failure_cnt=0");
        robot.leaf("GridmapLimitCheck").follows(on_map);
        robot.leaf("InCurrentSubregion").succeeds();
        robot.leaf("AwesomeSearch").fails();
        search("Origin").succeeds();
        robot.leaf("FixSubregions").writes("subregion_fixed", std::string("true"));
        robot.succeed(
            "EscapeCoat | NavigateProc | NavigateProcWithHistoryMap | NavigateFollowWall | BackToOrigin");
        robot.tree("PlanInSubregion_FollowGong").decides([this](const Moment&) {
            parts.push_back(robot.key("current_subregion").value_or(""));
            return SUCCESS;
        });
    }

    Answer& search(const std::string& mode) { return robot.leaf("AwesomeSearch").where("search_mode", mode); }

    /// There is a way back through a polygon wall, or none at all.
    void barTheWayBack(bool by_polygon_wall)
    {
        search("Origin").decides([by_polygon_wall, this](const Moment&) {
            const bool open =
                by_polygon_wall && robot.askedNow("TemporarilyDisableSensor sensor=PolygonVirtualWall");
            return open ? SUCCESS : FAILURE;
        });
    }

    bool on_map = true;
    std::vector<std::string> parts;  ///< what was cleaned, one after the other
};

TEST_F(HomeToCover, IsLeftForTheWayBackWhileTheRobotIsOffTheMap)
{
    robot.tree("PlanInSubregion_FollowGong").runs();
    robot.tree("BackToMapLimit").runs();
    EXPECT_EQ(robot.run("RecursiveAutoMode_FollowGong", 5), RUNNING);
    EXPECT_TRUE(robot.askedNow("PlanInSubregion_FollowGong"));
    robot.set("current_coord", 900);
    on_map = false;
    EXPECT_EQ(robot.tick(), RUNNING);
    EXPECT_TRUE(robot.askedNow("BackToMapLimit"));
    EXPECT_TRUE(robot.halted("PlanInSubregion_FollowGong"));
    on_map = true;
    EXPECT_EQ(robot.tick(5), RUNNING);
    EXPECT_TRUE(robot.halted("BackToMapLimit"));
    EXPECT_TRUE(robot.askedNow("PlanInSubregion_FollowGong"));
    EXPECT_TRUE(robot.started(1, "FixSubregions")) << "the floor was cut before";
    EXPECT_EQ(robot.key("origin_point"), "0");
}

TEST_F(HomeToCover, EndsWhenNoFloorIsReachedThatASearchOffers)
{
    search("Normal").inTurn({SUCCESS, SUCCESS, SUCCESS, FAILURE});
    search("SlamRetry").inTurn({SUCCESS, SUCCESS, FAILURE});
    robot.leaf("SlamRetryAreaCheck").succeeds();
    search("TargetCollision").succeeds();
    search("Target").succeeds();
    robot.leaf("FindNearestBoundary").fills("out_target_point", 5000);
    robot.tree("NavigateProc").failsAfter(2);
    robot.tree("NavigateFollowWall").failsAfter(2);
    EXPECT_EQ(robot.finish("AutoMode_FollowGong", 200), SUCCESS) << robot.transcript().print();
    EXPECT_TRUE(robot.started(5, "NavigateProc | NavigateFollowWall"));
    EXPECT_EQ(parts.size(), 1U) << "only where it stood";
}

TEST_F(HomeToCover, ADoubtfulWayBackIsDrivenAndLookedAtAgain)
{
    robot.set("path_bridge_max_failure_cnt", 1);
    robot.tree("NavigateProc").decides([this](const Moment&) {
        EXPECT_EQ(robot.key("ignore_pointcloud_during_escaping"), "true");
        EXPECT_TRUE(robot.askedNow("TemporarilyDisableSensor sensor=LaserTofPointcloud"));
        robot.set("path_bridge_max_failure_cnt", 0);
        return SUCCESS;
    });
    EXPECT_EQ(robot.finish("AutoMode_FollowGong", 100), SUCCESS);
    EXPECT_TRUE(robot.started(1, "NavigateProc"));
    EXPECT_EQ(parts.size(), 2U) << "the floor is looked over again from where it came out";
    EXPECT_FALSE(robot.has("ignore_pointcloud_during_escaping"));
}

TEST_F(HomeToCover, ADoorThatClosedBehindTheRobotIsATrapAndAPolygonWallIsNone)
{
    for (const bool by_polygon_wall : {false, true}) {
        barTheWayBack(by_polygon_wall);
        for (const char* coverage : {"AutoMode_FollowGong", "RecursiveAutoMode_GongFollow"}) {
            robot.succeed("IncreaseCoverage_mod | GongCompleteReconfirm");
            EXPECT_EQ(robot.finish(coverage, 200), by_polygon_wall ? SUCCESS : FAILURE) << coverage;
            EXPECT_FALSE(robot.has("OnElave")) << "it does not outlive " << coverage;
        }
    }
}

// --- rooms ------------------------------------------------------------------------------------------

struct RoomsToClean : HomeToCover
{
    RoomsToClean()
    {
        robot.set("segment_map_info=segment_map is_draw_area_cleaning=true in_new_area=false");
        robot.set("reuse_cleaning=0 use_mop=false wash_mop_mode=1 gong_vertically=true");
        robot.succeed("InCurrentDomain | TargetInCurrentSubregion | ExceedMaxTimes");
        search("Target").succeeds();
        robot.leaf("SetCurrentArea").decides([this](const Moment&) {
            robot.set("current_area_val", room);
            robot.set("current_subregion", "room " + std::to_string(room));
            ++room;
            return SUCCESS;
        });
    }

    /// Rooms that a search finds, with numbers from `first` on. With all others closed there is none.
    void rooms(int first, int count)
    {
        room = first;
        search("Segment").decides([left = count, this](const Moment&) mutable {
            return robot.key("are_other_areas_closed") != "true" && left-- > 0 ? SUCCESS : FAILURE;
        });
    }

    NodeStatus clean()
    {
        parts.clear();
        return robot.finish("CleanSelectedAreas", 1000);
    }

    int room = 1;
};

TEST_F(RoomsToClean, TheClothIsWashedBetweenRoomsAndNotBeforeTheFirst)
{
    robot.set("use_mop", true);
    for (const auto& [wash_mop_mode, count] : {std::pair{0, 2}, {0, 1}, {1, 2}}) {
        rooms(1, count);
        robot.set("wash_mop_mode", wash_mop_mode);
        robot.set("-mop_dirty -current_area_val -mop_reach_target_segment");
        parts.clear();
        robot.start("CleanSelectedAreas");
        for (int i = 0; i < 1000 && robot.tick() == RUNNING && !robot.has("mop_dirty");)
            ++i;
        const bool washes = wash_mop_mode == 0 && count == 2;
        EXPECT_EQ(robot.has("mop_dirty"), washes) << wash_mop_mode << ' ' << count;
        if (washes) {
            EXPECT_EQ(std::stod(*robot.key("mop_dirty")), 101.0);
            EXPECT_EQ(parts, std::vector<std::string>{"room 1"});
            EXPECT_EQ(robot.key("last_mopped_area_val"), "1");
        } else {
            EXPECT_EQ(parts.size(), static_cast<std::size_t>(count));
        }
    }
}

TEST_F(RoomsToClean, PassesCrossEachOtherUntilTheLimitOfTheRoom)
{
    rooms(5, 1);
    EXPECT_EQ(clean(), SUCCESS) << robot.transcript().print();
    EXPECT_EQ(parts, std::vector<std::string>{"room 5"});
    EXPECT_EQ(robot.key("gong_vertically"), "true") << "the limit stands before the turn";

    rooms(5, 1);
    robot.leaf("ExceedMaxTimes").inTurn({FAILURE, FAILURE, SUCCESS});
    std::vector<std::string> across;
    robot.tree("PlanInSubregion_FollowGong").decides([&](const Moment&) {
        across.push_back(*robot.key("gong_vertically") + ' ' + *robot.key("current_subregion"));
        return SUCCESS;
    });
    EXPECT_EQ(clean(), SUCCESS);
    EXPECT_EQ(across, (std::vector<std::string>{"true room 5", "false home", "true home"}));
}

TEST_F(RoomsToClean, Room126KeepsItsPartAndHasNoFloorBesideIt)
{
    robot.set("is_draw_area_cleaning", "false");
    robot.tree("RecursiveAutoMode_FollowGong").succeeds();
    for (const int number : {126, 5}) {
        rooms(number, 1);
        robot.erase("current_area_val");
        robot.leaf("ExceedMaxTimes").inTurn({FAILURE, SUCCESS});
        search("Normal").inTurn({SUCCESS, FAILURE});
        EXPECT_EQ(clean(), SUCCESS);
        const std::string first = "room " + std::to_string(number);
        const bool keeps = number == 126;
        EXPECT_EQ(parts, (std::vector<std::string>{first, keeps ? first : "home"}));
        EXPECT_TRUE(robot.started(keeps ? 0 : 2, "AwesomeSearch search_mode=Normal"));
        EXPECT_TRUE(robot.started(keeps ? 0 : 1, "RecursiveAutoMode_FollowGong"));
    }
}

TEST_F(RoomsToClean, ARoomThatIsNeverReachedIsToldAndTheTaskEnds)
{
    rooms(1, 3);
    robot.leaf("InCurrentDomain").fails();
    robot.set("current_pose=0 navi_target_point=4000");
    robot.tree("NavigateProcWithHistoryMap").failsAfter(2);
    robot.tree("NavigateFollowWall").failsAfter(2);
    EXPECT_EQ(clean(), SUCCESS) << robot.transcript().print();
    EXPECT_TRUE(robot.started(3, "NavigateFollowWall"));
    EXPECT_TRUE(parts.empty());
    EXPECT_TRUE(robot.keysAre("prompt_zone_not_reached=true -zone_not_reached"));
}

TEST_F(RoomsToClean, ABarredWayHomeIsToldByWhatBarsIt)
{
    const std::string trapped = "KQD: 不切回充，直接返回，由模式树决定被困类型";
    const std::string untried = "KQD: 不切回充，报清扫路径被阻挡";
    for (const auto& [untried_floor, by_polygon_wall, result] :
         {std::tuple{false, false, SUCCESS}, {true, false, FAILURE}, {true, true, FAILURE}}) {
        const std::string what = std::to_string(untried_floor) + std::to_string(by_polygon_wall);
        rooms(1, 1);
        robot.set("-clean_vw_blocked -have_trapped_type");
        barTheWayBack(by_polygon_wall);
        robot.leaf("SearchUntriedArea").gives(untried_floor);
        EXPECT_EQ(clean(), result) << what;
        EXPECT_EQ(bool{robot.said(untried)}, untried_floor) << what;
        EXPECT_EQ(bool{robot.said(trapped)}, untried_floor && !by_polygon_wall) << what;
        EXPECT_EQ(robot.has("clean_vw_blocked"), untried_floor && by_polygon_wall) << what;
        EXPECT_FALSE(robot.has("OnElave")) << what;
    }
}

// --- back onto the map ------------------------------------------------------------------------------

struct OffTheMap : RobotOnALine
{
    OffTheMap()
    {
        robot.set("current_pose=0 bump_dir=middle");
        robot.succeed("NotTrapped | Bumped");
        robot.leaf("FindLastInTrajectory").fills("out_point_grid", "clear");
        robot.leaf("FromFloatToPlainPoseMm").fills("out_key", "origin");
        robot.tree("NaviOnePointProc").decides([this](const Moment&) {
            goals.push_back(robot.key("navi_target_point").value_or(""));
            return goals.size() < 3 ? SUCCESS : RUNNING;
        });
        robot.tree("FollowWallProc").runs();
    }
    std::vector<std::string> goals;
};

TEST_F(OffTheMap, DrivesToTheLastClearSpotAndThenToTheOrigin)
{
    EXPECT_EQ(robot.run("BackToMapLimit", 5), RUNNING);
    EXPECT_EQ(goals.at(0), "0;0") << "there is no track";
    EXPECT_EQ(goals.at(1), "origin");
    goals.clear();
    robot.set("robot_trajectory", "track");
    EXPECT_EQ(robot.run("BackToMapLimit", 5), RUNNING);
    EXPECT_EQ(goals.at(0), "clear");
    EXPECT_EQ(goals.at(1), "origin");
}

TEST_F(OffTheMap, PassesAThingOnTheRightForAMetreThenOnTheLeftForTwo)
{
    robot.tree("NaviOnePointProc").fails();
    robot.start("BackToMapLimit");
    const auto stand = [this](int at, int frames) {
        robot.set("current_pose", at);
        robot.tick(frames);
    };
    std::string follows;
    robot.leaf("SetFollowWallDirection").decides([&](const Moment& now) {
        follows += now.port("prefer_direction").front();
        return SUCCESS;
    });
    stand(0, 5);
    EXPECT_EQ(follows, "R");
    EXPECT_TRUE(robot.askedNow("FollowWallProc"));
    stand(900, 5);
    EXPECT_EQ(follows, "RR") << "150 mm along the wall the straight drive is tried again";
    stand(1100, 5);
    EXPECT_EQ(follows, "RRL");
    stand(3000, 5);
    EXPECT_EQ(follows, "RRLL");
    robot.forget();
    stand(3200, 50);
    EXPECT_EQ(follows, "RRLL") << "two metres from where it turned to the left";
    EXPECT_TRUE(robot.asked("NaviOnePointProc"));
}

TEST_F(OffTheMap, GivesUpAfterThreeMinutes)
{
    robot.tree("NaviOnePointProc").failsAfter(3);
    robot.leaf("Bumped").fails();
    EXPECT_EQ(robot.finish("BackToMapLimit", 9100), FAILURE);
    EXPECT_NEAR(robot.frame(), 9000, 5);
    EXPECT_TRUE(robot.keysAre("-prefer_direction -first_contact_point"));
}

}  // namespace
}  // namespace vemra::test
