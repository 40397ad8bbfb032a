#include <cmath>

#include "robot/robot_rig.h"
#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/dock/dock_contacts.h"
#include "robot/services/dock/dock_place.h"
#include "robot/services/dock_signal/dock_bearing.h"
#include "robot/services/dock_signal/dock_signal.h"
#include "robot/services/motion/motion.h"
#include "robot/world/dock_field.h"

namespace vemra::robot {
namespace {

// 4 m by 3 m; the dock stands in the middle of the lower wall and looks up.
const Dock kDock{{{2000, 50}, {90}}};

Home roomOfDock()
{
    return sketch(room(82, 62));
}

// So far out of the dock's face, so far to the dock's own left.
PointMm before(double out_mm, double left_mm)
{
    return kDock.face.at + PointMm{-left_mm, out_mm};
}

TEST(DockField, NamesItsSectorsAsARobotSeesThemThatFacesTheDock)
{
    const DockField field(kDock);
    // The dock's own left is the right of whoever faces it.
    EXPECT_EQ(field.sentTowards(before(1000, 0)), DockSignal::Middle);
    EXPECT_EQ(field.sentTowards(before(1000, 250)), DockSignal::CentralRight);
    EXPECT_EQ(field.sentTowards(before(1000, 700)), DockSignal::Right);
    EXPECT_EQ(field.sentTowards(before(1000, -250)), DockSignal::CentralLeft);
    EXPECT_EQ(field.sentTowards(before(1000, -700)), DockSignal::Left);
    EXPECT_EQ(field.sentTowards(before(200, 700)), DockSignal::None) << "more than 65 degrees off";
    EXPECT_EQ(field.sentTowards(before(50, 15)), DockSignal::Middle) << "20 mm beside the line";
    EXPECT_EQ(field.sentTowards(before(-300, 0)), DockSignal::None);
}

TEST(DockField, IsHeardWhereNothingStandsInTheWayAndBeyondThatByMirrors)
{
    World world(roomOfDock());
    const Home& home = world.visible();
    const DockField field(kDock);
    EXPECT_EQ(field.raysAt(before(2500, 0), home).size(), 1U);
    EXPECT_TRUE(field.raysAt(before(2000, 1600), home).empty()) << "the outer signals carry 2.5 m";
    EXPECT_TRUE(field.isNear(before(600, 300), home));
    EXPECT_FALSE(field.isNear(before(600, 400), home));

    const auto low = world.putDown({{1900, 400}, {2100, 500}}, Height::Low);
    EXPECT_EQ(field.raysAt(before(1000, 0), home).size(), 1U) << "the light goes over low things";
    world.takeAway(low);
    world.putDown({{1900, 400}, {2100, 500}});
    EXPECT_TRUE(field.raysAt(before(1000, 0), home).empty());
    EXPECT_FALSE(field.isNear(before(600, 0), home));

    // By a mirror it comes from where it is thrown back.
    const DockField shown(kDock, {.dropouts = 0, .mirrors = {{{1500, 100}, {1500, 1500}}}});
    const auto rays = shown.raysAt({1700, 700}, home);
    ASSERT_EQ(rays.size(), 2U);
    EXPECT_THAT(rays[1].way_mm, Gt(rays[0].way_mm));
    EXPECT_NEAR(rays[1].from.x, 1500, 1);
}

TEST(DockBearing, IsFoundFromTheStrengthsOfTheTwoFrontReceivers)
{
    World world(roomOfDock());
    const DockField field(kDock, {.dropouts = 0, .mirrors = {}});
    for (const double away : {400.0, 700.0, 1500.0, 2400.0}) {
        for (const double bearing : {-25.0, -8.0, 0.0, 8.0, 25.0}) {
            if (away < 500 && std::abs(bearing) > 20)
                continue;  // the far receiver looks past it
            // On the middle line, turned aside.
            const PoseMm at{before(away, 0), {-90 - bearing}};
            double sum_deg = 0;
            double sum_mm = 0;
            Chance chance(3);
            constexpr int kTimes = 50;
            for (int i = 0; i < kTimes; ++i) {
                const Hearing hearing = hear(field, world.visible(), at, chance);
                const DockBearing found = dockBearing(hearing[1].strength, hearing[2].strength);
                sum_deg += found.deg / kTimes;
                sum_mm += found.away_mm / kTimes;
            }
            EXPECT_NEAR(sum_deg, bearing, 1.5) << away << " mm, " << bearing << " degrees";
            EXPECT_NEAR(sum_mm, away, 0.05 * away) << bearing;
        }
    }
}

// A robot before a dock that sends without dropouts.
class DockRig : public RobotRig
{
public:
    explicit DockRig(const PoseMm& at, DockField::Config config = {.dropouts = 0, .mirrors = {}})
        : RobotRig(roomOfDock(), at)
    {
        world.setDockField(DockField(kDock, std::move(config)));
        install({&motion, &dock});
    }
    ~DockRig() override { dropTrees(); }

    bool hears(const std::string& receiver, const std::string& signal)
    {
        return passes("ChargerReceiverPickedUpSignal receiver=" + receiver + " signal=" + signal);
    }
    double number(const std::string& key) const
    {
        double value = NAN;
        blackboard->get(key, value);
        return value;
    }
    // A turn on the spot beside the leaf that marks; the heading at its end.
    void markingTurn()
    {
        enter("GoChargingFullRoundTurn");
        EXPECT_EQ(run(1500), NodeStatus::SUCCESS);
    }

    TruePose pose{body};
    MotionService motion{parts, pose};
    DockSignalService dock{parts, pose};
};

TEST(DockSignals, AreTold)
{
    DockRig rig({before(1000, -330), {-90}});
    rig.frames(3);
    EXPECT_TRUE(rig.hears("MiddleLeft", "CentralLeft") || rig.hears("MiddleLeft", "Left"));
    EXPECT_TRUE(rig.hears("MiddleRight", "Any"));
    EXPECT_TRUE(rig.hears("Any", "Any"));
    EXPECT_TRUE(rig.hears("Left", "None"));
    EXPECT_FALSE(rig.hears("Any", "None"));
    EXPECT_FALSE(rig.hears("Any", "Right"));
    rig.carryTo({before(1000, -330), {90}}, 3);
    EXPECT_TRUE(rig.hears("MiddleLeft", "Any")) << "held over a dropout";
    rig.frames(6);
    EXPECT_TRUE(rig.hears("Any", "None"));
    EXPECT_FALSE(rig.passes("ConsistentlyLostDockSignal"));
    for (int i = 0; i < 70; ++i) {
        rig.frame();
        EXPECT_EQ(rig.passes("ConsistentlyLostDockSignal"), i >= 59) << i;
    }
    // A drive that begins now has its time.
    rig.frames(5);
    EXPECT_FALSE(rig.passes("ConsistentlyLostDockSignal"));
}

// So the image in a mirror looks, and a dock that was put together the wrong way round.
TEST(DockSignals, ADockThatIsHeardCrosswiseIsNotBelieved)
{
    DockRig rig({before(450, 0), {-90}}, {.exchanged = true, .dropouts = 0, .mirrors = {}});
    rig.frames(20);
    EXPECT_TRUE(rig.hears("MiddleLeft", "CentralRight"));
    EXPECT_TRUE(rig.hears("MiddleRight", "CentralLeft"));
    rig.frames(15);
    EXPECT_TRUE(rig.hears("Any", "None"));
    // It listens again once it was quiet.
    rig.carryTo({before(450, 0), {90}}, 120);
    rig.carryTo({before(450, 0), {-90}}, 5);
    EXPECT_TRUE(rig.hears("MiddleLeft", "Any"));

    DockRig right({before(450, 0), {-90}});
    right.frames(200);
    EXPECT_TRUE(right.hears("MiddleLeft", "CentralLeft"));
    EXPECT_TRUE(right.hears("MiddleRight", "CentralRight"));
}

TEST(DockSignals, AMarkingTurnFindsTheDockFromAnyHeading)
{
    for (const double yaw : {-90.0, -60.0, 0.0, 135.0}) {
        DockRig rig({before(1200, -400), {yaw}});
        rig.markingTurn();
        EXPECT_TRUE(rig.keysAre("marker_signal_type=CentralLeft marker_in_dock_field=false")) << yaw;
        const double there = degreesOfRadians(std::atan2(-1200, -400)).value;
        EXPECT_THAT(std::abs(wrapped({rig.number("marker_dir") - there}).value), Lt(4)) << yaw;
        EXPECT_THAT(std::abs(rig.number("marker_dir") - rig.yaw()), Lt(181)) << "the trees compare sums";
    }
    DockRig near({before(500, 0), {10}});
    near.markingTurn();
    EXPECT_TRUE(near.keysAre("marker_signal_type=Middle marker_in_dock_field=true"));
    DockRig deaf({before(1500, 0), {0}});
    deaf.world.putDown({{1700, 300}, {2300, 400}});
    deaf.markingTurn();
    EXPECT_EQ(deaf.text("marker_signal_type"), "None");
}

TEST(DockSignals, TheFinalApproachEndsOnTheContacts)
{
    DockRig rig({before(700, 60), {-90}}, {.dropouts = 0.05, .mirrors = {}});
    rig.frames(2);
    rig.enterLeaf("FollowDockSignalFinal");
    const PoseMm docked = dockedPose(kDock);
    for (int i = 0; i < 600 && rig.away(docked.at) > 20; ++i)
        ASSERT_EQ(rig.frame(), NodeStatus::RUNNING);
    EXPECT_THAT(rig.away(docked.at), Lt(30));
    rig.state.contacts.update(true);
    rig.frame();
    EXPECT_EQ(rig.body.commanded(), WheelSpeeds{}) << "the wheels are off on the contacts";
    // Without any signal it gives up, and does so again only when something has changed.
    DockRig deaf({before(1000, 0), {90}});
    deaf.enterLeaf("FollowDockSignalFinal");
    EXPECT_EQ(deaf.run(400), NodeStatus::FAILURE);
    EXPECT_EQ(deaf.frames_run, 51);
}

TEST(DockSignals, AFailedApproachIsWeighedIntoABetterOne)
{
    // 500 mm off the dock and 100 mm beside the line, on the left as the robot sees it.
    DockRig rig({before(500, -100), {-90}});
    rig.frames(20);
    EXPECT_TRUE(rig.passes("WeighDockSignalFirstStep"));
    EXPECT_TRUE(rig.passes("WeighDockSignalSecondStep out_angle_deg=turn_target_angle"));
    // A run of 300 mm there ends nearer to the line and farther from the dock.
    const PointMm run = 300 * direction({rig.number("turn_target_angle")});
    const PointMm end = rig.at() + run - kDock.face.at;
    EXPECT_THAT(std::abs(end.x), Lt(60));
    EXPECT_THAT(end.y, Gt(700));
}

TEST(DockSignals, AReflectionTurnsTheRobotBackToTheSource)
{
    // A polished box on the left of the dock; the robot runs into it where it sees the dock.
    DockRig rig({{1560, 700}, {180}}, {.dropouts = 0, .mirrors = {{{1350, 300}, {1350, 1200}}}});
    rig.world.putDown({{1300, 300}, {1350, 1200}});
    rig.frames(10);
    EXPECT_FALSE(rig.passes("IsGotReflectedSignal target_angle=turn_angle_after_reflect"));
    rig.drive({100, 100}, 25);
    ASSERT_TRUE(rig.body.bumper().any());
    ASSERT_TRUE(rig.passes("IsGotReflectedSignal target_angle=turn_angle_after_reflect"));
    const double to = rig.yaw() + rig.number("turn_angle_after_reflect");
    const PointMm way = kDock.face.at - rig.at();
    const double dock_at = degreesOfRadians(std::atan2(way.y, way.x)).value;
    EXPECT_THAT(std::abs(wrapped({to - dock_at}).value), Lt(45));
}

TEST(DockPlace, IsKeptFromTheContactsAndReckonedFromTheDriveOffThem)
{
    class PlaceRig : public RobotRig
    {
    public:
        PlaceRig() : RobotRig(roomOfDock(), dockedPose(kDock)) { install({&place}); }
        ~PlaceRig() override { dropTrees(); }
        Localisation pose{body};
        MapStore store;
        RobotMap map{body, pose};
        DockPlace place{parts, pose, store, map, switches};
    } rig;
    const std::string stored = "GetChargerFromReuseInfo out_point_mm=found";
    EXPECT_FALSE(rig.passes(stored)) << "never docked";
    rig.state.contacts.update(true);
    rig.frame();
    rig.map.update(1);
    EXPECT_FALSE(rig.passes(stored)) << "no stored map";
    rig.blackboard->set("reuse_map_id", 1);
    ASSERT_TRUE(rig.passes(stored));
    PointMm found;
    ASSERT_TRUE(rig.blackboard->get("found", found));
    EXPECT_NEAR(found.x, 2000, 10);
    EXPECT_NEAR(found.y, 50 + 700, 10) << "on the middle line, 700 mm before the face";

    const PoseMm docked = rig.body.odometry();
    rig.blackboard->set("odom_pos_before", docked);
    EXPECT_FALSE(rig.passes("CalcChargerPosition out_charger_position=dock"));
    rig.drive({-100, -80}, 100);
    rig.blackboard->set("odom_pos_after", rig.body.odometry());
    ASSERT_TRUE(rig.passes("CalcChargerPosition out_charger_position=dock"));
    PoseMm dock;
    ASSERT_TRUE(rig.blackboard->get("dock", dock));
    EXPECT_THAT(distance(dock.at, dockedPose(kDock).at), Lt(10));
    EXPECT_THAT(std::abs(wrapped({dock.yaw.value - dockedPose(kDock).yaw.value}).value), Lt(2));

    // A map is begun away from the dock; then the stored one is found to hold.
    rig.state.contacts.update(false);
    rig.pose.restart({});
    rig.frame();
    EXPECT_FALSE(rig.passes(stored)) << "it stood in another frame";
    rig.store.in_use = true;
    rig.store.map.emplace().docked = PoseMm{{500, 500}, {180}};
    rig.pose.restart({});
    rig.frame();
    ASSERT_TRUE(rig.passes(stored));
    rig.blackboard->get("found", found);
    EXPECT_NEAR(found.x, 500 + 525, 1) << "where it stood when the map was kept";
}

}  // namespace
}  // namespace vemra::robot
