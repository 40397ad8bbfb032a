#include <algorithm>
#include <map>
#include <utility>

#include "robot/navigation_rig.h"
#include "robot/world/sight.h"

namespace vemra::robot {
namespace {

constexpr PoseMm kLivingRoom{{2700, 2600}, {-90}};
constexpr PointMm kBathroom{7900, 5500};
constexpr double kArrivedMm = 110;
// 850 mm and 900 mm wide.
constexpr BoxMm kDoorToHall{{4100, 3800}, {4950, 3900}};
constexpr BoxMm kDoorToKitchen{{5000, 1500}, {5100, 2400}};

struct FlatTest : testing::Test
{
    double knownShare() const
    {
        const std::vector<PointMm> visible =
            floorInSight(robot.world, robot.at(), robot.body.laser().range_mm);
        const auto known = std::count_if(visible.begin(), visible.end(), [this](PointMm place) {
            return robot.map.occupancy().at(cellAt(place)) != CellState::Unknown;
        });
        return static_cast<double>(known) / static_cast<double>(visible.size());
    }

    // As the cleaning trees do it: search, drive, follow what was hit, until there or until there is no way.
    bool goTo(PointMm goal, const std::string& mode, int most_tries = 10)
    {
        for (tries = 1; tries <= most_tries; ++tries) {
            if (!robot.search(mode, goal))
                return false;
            const std::string drive = mode == "Target" ? "NavigateProc" : "NavigateProcNoUnknown";
            if (robot.runTree(drive, 6000) == NodeStatus::SUCCESS)
                return true;
            robot.passes("SetMapDrawMode draw_mode=BlockOnly");
            robot.blackboard->set("navi_followwall_mode", mode);
            EXPECT_EQ(robot.runTree("NavigateFollowWall", 4000), NodeStatus::FAILURE);
        }
        return false;
    }
    bool arrivesAt(PointMm goal, const std::string& mode, int most_tries = 10)
    {
        return goTo(goal, mode, most_tries) && robot.away(goal) < kArrivedMm;
    }
    // The cell of the place that was handed out.
    std::pair<int, int> offered() const
    {
        const CellIndex cell = cellAt(pointOf(*robot.blackboard, "navi_target_point").value());
        return {cell.column, cell.row};
    }

    NavigationRig robot{NavigationRig::flat(), kLivingRoom};
    int tries = 0;
};

TEST_F(FlatTest, FloorThatWasNotSeenYetIsNoHindranceUnlessItIsAskedFor)
{
    EXPECT_FALSE(robot.search("TargetNoUnknown", kBathroom));
    EXPECT_TRUE(arrivesAt(kBathroom, "Target"));
    // The way back is known by now.
    EXPECT_TRUE(goTo(kLivingRoom.at, "TargetNoUnknown", 1));
}

TEST_F(FlatTest, AThingBelowTheLaserIsBumpedIntoAndPassedAlong)
{
    robot.knowHome();
    robot.world.putDown({{3900, 2800}, {4500, 3100}}, Height::Low);
    ASSERT_TRUE(robot.search("Target", kBathroom));
    EXPECT_EQ(robot.runTree("NavigateProc", 3000), NodeStatus::FAILURE);
    EXPECT_TRUE(robot.bumped);
    EXPECT_TRUE(robot.passes("Bumped bump_dir=${bump_dir}"));
    EXPECT_FALSE(robot.body.bumper().any()) << "it has backed off";

    EXPECT_TRUE(arrivesAt(kBathroom, "Target"));
    EXPECT_THAT(robot.map.contacts().all(), Not(IsEmpty()));
}

TEST_F(FlatTest, AShutDoorMakesItTakeAnotherWayAndNoneIsAFailure)
{
    robot.knowHome();
    robot.world.putDown(kDoorToHall);
    EXPECT_TRUE(arrivesAt(kBathroom, "TargetNoUnknown"));
    EXPECT_GT(tries, 1) << "it learnt on its way that the door is shut";

    robot.world.putDown(kDoorToKitchen);
    EXPECT_FALSE(goTo(kLivingRoom.at, "TargetNoUnknown"));
    EXPECT_FALSE(robot.search("Origin", kLivingRoom.at));
    // The tree that keeps on searching ends as well.
    robot.blackboard->set("navi_target_point", kLivingRoom.at);
    EXPECT_EQ(robot.runTree("NavigateProcWithHistoryMapNoneStop", 4000), NodeStatus::FAILURE);
}

TEST_F(FlatTest, ItLeavesAVirtualWallThatItStandsIn)
{
    robot.knowHome();
    robot.drawWalls("virtual_wall_rects=2200;2200;3200;3000");
    EXPECT_EQ(robot.runTree("CheckInVirtualWall", 2000), NodeStatus::SUCCESS);
    EXPECT_EQ(robot.map.virtualWalls().areaAt(robot.at()), nullptr);
    EXPECT_TRUE(robot.keysAre("-have_trapped_type"));

    // A plan from within begins with a temporary bridge.
    robot.carryTo(kLivingRoom);
    ASSERT_TRUE(robot.search("Target", kBathroom));
    ASSERT_TRUE(robot.takeUp());
    EXPECT_FALSE(robot.passes("PathSegIsVector"));
    EXPECT_TRUE(robot.passes("BridgeTypeReader bridge=${navigation_bridge} out_bridge_type=kind"));
    EXPECT_EQ(robot.text("kind"), "TMP");
    robot.passes("SetMapDrawMode draw_mode=Default");
    EXPECT_TRUE(goTo(kBathroom, "Target"));
    // No way leads back into it.
    EXPECT_FALSE(robot.search("TargetNoUnknown", kLivingRoom.at));
}

TEST_F(FlatTest, ItLeavesAVirtualWallInWhichItTouchesSomething)
{
    robot.knowHome();
    robot.world.putDown({{2600, 2350}, {2800, 2420}}, Height::Low);
    robot.blackboard->set("virtual_wall_rects", "1800;1200;3600;2900");
    ASSERT_TRUE(robot.passes("GenerateVirtualWalls"));
    robot.passes("SetMapDrawMode draw_mode=BlockOnly");
    robot.body.drive({100, 100});
    robot.frames(60);
    ASSERT_THAT(robot.map.contacts().all(), testing::SizeIs(1));
    EXPECT_EQ(robot.runTree("Back2cm", 100), NodeStatus::SUCCESS);
    ASSERT_LT(distance(robot.map.contacts().all().front().at, robot.at()), 200) << "no room to stand";
    ASSERT_TRUE(robot.search("Target", kBathroom));
    ASSERT_TRUE(robot.passes("CheckPathSegment input_navi_path=${navigation_path_segments}"));
    EXPECT_FALSE(robot.passes("PathSegIsVector")) << "a plan begins with the way out";
    EXPECT_FALSE(robot.passes("PromptInVirtualWall"));
    EXPECT_TRUE(robot.blackboard->contains("out_vw_point"));
    EXPECT_EQ(robot.runTree("CheckInVirtualWall", 2000), NodeStatus::SUCCESS);
    EXPECT_EQ(robot.map.virtualWalls().areaAt(robot.at()), nullptr);
}

TEST_F(FlatTest, OnItsWayOutOfAnAreaItKeepsToTheLineWallBeyond)
{
    robot.knowHome();
    // The follow along the shoe, within the area, ends outside of it.
    robot.world.putDown({{3000, 2300}, {3100, 3300}}, Height::Low);
    robot.carryTo({{2500, 3000}, {0}});
    const SegmentMm line{{3600, 1700}, {3600, 3000}};
    robot.set("current_subregion=0;0;9000;6700 bump_dir=None");
    robot.drawWalls("virtual_wall_rects=2000;2500;3000;3500 virtual_wall_lines=3600;1700;3600;3000");
    EXPECT_TRUE(goTo({4300, 2000}, "Target"));

    const auto& track = robot.body.track();
    for (std::size_t i = 1; i < track.size(); ++i) {
        const PointMm a = track[i - 1].pose.at;
        const PointMm b = track[i].pose.at;
        const bool beside = b.y > line.from.y && b.y < line.to.y;
        EXPECT_FALSE(beside && (a.x < line.from.x) != (b.x < line.from.x)) << "through the line at y " << b.y;
    }
}

TEST_F(FlatTest, ExploringShowsTheWholeFlat)
{
    int drives = 0;
    std::map<std::pair<int, int>, int> offers;
    for (; drives < 60 && robot.search("Explore"); ++drives) {
        EXPECT_LE(++offers[offered()], 2) << "a frontier is given a third time";
        robot.runTree("NavigateExploreProc", 3000);
    }
    EXPECT_LT(drives, 60);
    EXPECT_GT(knownShare(), 0.98);
    EXPECT_TRUE(robot.search("TargetNoUnknown", kBathroom));
}

// Whoever exploring hands a place to may fail to get there: each is handed out twice, and then there is none.
TEST_F(FlatTest, ExploringComesToAnEndWhereEveryDriveFails)
{
    robot.frames(10);
    std::map<std::pair<int, int>, int> offers;
    int given = 0;
    for (; given < 500 && robot.search("Explore"); ++given)
        ++offers[offered()];
    EXPECT_THAT(given, AllOf(Gt(2), Lt(500)));
    for (const auto& [place, times] : offers)
        EXPECT_EQ(times, 2) << place.first << ", " << place.second;
    robot.map.reset();
    robot.frames(10);
    EXPECT_TRUE(robot.search("Explore")) << "a new map, a new book";
}

// A thing that only the bumper meets stands on the way, so that a wall is followed too.
TEST_F(FlatTest, QuickExploreDrivesAlongTheEdgeOfTheKnownUntilThereIsNone)
{
    robot.world.putDown({{4000, 3400}, {4600, 3500}}, Height::Low);
    robot.frame();
    const double before = knownShare();
    EXPECT_EQ(robot.runTree("QuickExplore", 30000), NodeStatus::FAILURE) << "it always fails";
    EXPECT_LT(before, 0.5);
    EXPECT_GT(knownShare(), 0.98);
    EXPECT_TRUE(robot.bumped);
    EXPECT_EQ(robot.text("no_point_fs"), "true");
    EXPECT_EQ(robot.text("current_draw_mode"), "Default") << "as it was";
    EXPECT_TRUE(robot.search("TargetNoUnknown", kBathroom));
}

// --- along walls ---------------------------------------------------------------------------------

// A room of 4 m by 3 m with a block of 600 mm in its middle.
std::vector<std::string> roomWithBlock()
{
    std::vector<std::string> lines = room(82, 62);
    fill(lines, {35, 25}, {46, 36}, '#');
    return lines;
}

constexpr PoseMm kBelowBlock{{2050, 900}, {0}};

struct WallTest : testing::Test
{
    NavigationRig robot{sketch(roomWithBlock()), kBelowBlock};
};

TEST_F(WallTest, FollowingEndsAtTheEdgeOfTheRectangle)
{
    robot.carryTo({{1000, 300}, {0}});
    robot.set("follow_wall_dir=true");
    ASSERT_TRUE(robot.passes("SetFollowWallRectLimit"));
    EXPECT_EQ(robot.runTree("FollowWallTillRectLimit", 2000), NodeStatus::SUCCESS);
    EXPECT_THAT(robot.away({1000, 300}), AllOf(Gt(500), Lt(800)));
}

TEST_F(WallTest, FollowingEndsWhenItComesRound)
{
    robot.body.carryTo({{2050, 1060}, {0}});  // the block on the left
    robot.frame();
    robot.set("follow_wall_dir=false follow_wall_limit=0;0;4100;3100");
    EXPECT_EQ(robot.runTree("FollowWallTillRectLimit", 4000), NodeStatus::FAILURE);
    EXPECT_GT(robot.frames_run, 700) << "once round the block";
    EXPECT_LT(robot.away({2050, 1060}), 400);
}

TEST_F(WallTest, TheBorderOfThePartIsFollowedLikeAWall)
{
    const std::string border = "SensorTriggerBump sensor=SubregionBorder";
    robot.blackboard->set("current_subregion", BoxMm{{-1000, -1000}, {1500, 4000}});
    robot.body.carryTo({{1400, 1500}, {0}});
    robot.blackboard->set("bump_dir", "None");
    robot.frames(2);
    EXPECT_FALSE(robot.passes(border)) << "it is off";
    EXPECT_FALSE(robot.passes("SensorTriggerBump sensor=Nowhere"));
    EXPECT_EQ(robot.text("bump_dir"), "None");

    robot.switches.open(this, "SubregionBorder", true, false);
    ASSERT_TRUE(robot.passes(border));
    EXPECT_EQ(robot.text("bump_dir"), "virtual");
    robot.blackboard->set("follow_wall_dir", "true");
    robot.enter("FollowWallProc");
    double farthest = 0;
    double highest = 0;
    int at_border = 0;
    for (int i = 0; i < 1500; ++i) {
        ASSERT_EQ(robot.frame(), NodeStatus::RUNNING);
        farthest = std::max(farthest, robot.at().x);
        highest = std::max(highest, robot.at().y);
        at_border += std::abs(robot.at().x - 1550) < 60 ? 1 : 0;
    }
    EXPECT_GT(highest, 2700) << "with the border on its right it goes up";
    EXPECT_LT(farthest, 1600);
    EXPECT_GT(at_border, 250);
    EXPECT_LT(robot.at().x, 1000) << "and along the wall back";
    EXPECT_FALSE(robot.bumped);

    const auto contactAt = [this](const PoseMm& at) {
        robot.carryTo(at);
        return robot.sensing.contact();
    };
    EXPECT_EQ(contactAt({{1570, 1500}, {0}}), "virtual");
    EXPECT_EQ(contactAt({{1570, 1500}, {180}}), "None") << "it turns its back to it";
    EXPECT_EQ(contactAt({{1800, 700}, {180}}), "None") << "it is outside";
}

// Whatever stands there, and whether or not the laser sees it: in each minute the robot gets on.
TEST_F(WallTest, FollowingGetsOnInEveryMinuteAlongLowThingsAndOpenFloor)
{
    constexpr int kMinute = 3000;
    // Low strips along the walls and across a corner, as wide as a leg and as a sofa.
    const std::vector<BoxMm> low{{{50, 2850}, {1600, 3050}},
                                 {{2600, 50}, {4050, 300}},
                                 {{3700, 1500}, {4050, 1750}},
                                 {{50, 900}, {120, 960}}};
    std::vector<std::string> open = roomWithBlock();
    fill(open, {60, 20}, {81, 61}, '.');  // no wall: floor as far as the map goes
    for (const bool with_low_things : {true, false}) {
        for (const bool right : {true, false}) {
            NavigationRig other{sketch(with_low_things ? roomWithBlock() : open), {{600, 300}, {0}}};
            if (with_low_things)
                for (const BoxMm& box : low)
                    other.world.putDown(box, Height::Low);
            other.blackboard->set("follow_wall_dir", right ? "true" : "false");
            other.enter("FollowWallProc");
            for (int minute = 0; minute < 4; ++minute) {
                BoxMm span{other.at(), other.at()};
                for (int i = 0; i < kMinute; ++i) {
                    ASSERT_EQ(other.frame(), NodeStatus::RUNNING);
                    span = {{std::min(span.low.x, other.at().x), std::min(span.low.y, other.at().y)},
                            {std::max(span.high.x, other.at().x), std::max(span.high.y, other.at().y)}};
                }
                EXPECT_GT(std::max(span.high.x - span.low.x, span.high.y - span.low.y), 600)
                    << (with_low_things ? "low things, " : "open floor, ") << (right ? "right" : "left")
                    << ", minute " << minute << ", at " << other.at();
            }
        }
    }
}

// Between two corners that are just as far apart as the body is wide.
TEST_F(WallTest, WithNoRoomToBackOffItTurnsAway)
{
    robot.world.putDown({{700, 500}, {800, 700}}, Height::Low);
    robot.world.putDown({{1150, 700}, {1250, 900}}, Height::Low);
    robot.body.carryTo({{975, 700}, {0}});
    robot.blackboard->set("follow_wall_dir", "true");
    robot.enter("FollowWallProc");
    for (int i = 0; i < 1500 && robot.away({975, 700}) < 500; ++i)
        ASSERT_EQ(robot.frame(), NodeStatus::RUNNING) << i;
    EXPECT_GE(robot.away({975, 700}), 500) << "at " << robot.at();
}

TEST_F(WallTest, CollisionsAtOnePlaceAreTooManyAtLastAndElsewhereAreNot)
{
    int times = 0;
    while (times < 50 && robot.passes("CheckSuccessiveCollision"))
        ++times;
    EXPECT_THAT(times, AllOf(Ge(3), Lt(20)));
    for (int i = 0; i < 18; ++i) {
        robot.carryTo({{400.0 + 400 * (i % 9), 400}, {0}});
        EXPECT_TRUE(robot.passes("CheckSuccessiveCollision")) << "counting begins anew";
    }
}

TEST_F(WallTest, TheSideComesFromTheContactOrIsForced)
{
    const auto sideAfter = [&](const char* bump) {
        robot.blackboard->set("bump_dir", bump);
        EXPECT_TRUE(robot.passes("AdvancedSetFollowWallDirection"));
        return robot.text("follow_wall_dir");
    };
    EXPECT_EQ(sideAfter("left"), "false");
    EXPECT_EQ(sideAfter("right"), "true");
    EXPECT_EQ(sideAfter("right_cliff"), "true");
    robot.blackboard->set("advanced_follow_wall_force_dir", "false");
    EXPECT_EQ(sideAfter("right"), "false");
}

}  // namespace
}  // namespace vemra::robot
