#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

/// A step of a follow with the review before it; the robot drives on a line at the speeds that it is told.
struct Review : RobotOnALine
{
    Review()
    {
        robot.set("Enable_Laser Enable_AI current_draw_mode=Default current_pose=0.0 current_yaw_deg=0.0");
        robot.set("follow_wall_dir=true");
        robot.leaf("OpenCloseMove").decides([](const Moment& now) {
            const double mean = (std::stod(now.port("left_mm_s")) + std::stod(now.port("right_mm_s"))) / 2;
            now.set("current_pose", now.keys.get<double>("current_pose") + mean / 50);
            return RUNNING;
        });
        robot.leaf("Rotate").decides([](const Moment& now) {
            const double way = std::stod(now.port("angle_deg")) > 0 ? 1 : -1;
            now.set("current_yaw_deg", now.keys.get<double>("current_yaw_deg") + way * 1.2);
            return RUNNING;
        });
        robot.tree("Back2cm").succeeds();
    }

    [[nodiscard]] int back(const std::string& mm_s = "-90") const
    {
        return robot.framesOf("OpenCloseMove left_mm_s=" + mm_s + " right_mm_s=" + mm_s);
    }
};

TEST_F(Review, NeedsItsKeyAndRestoresTheDrawMode)
{
    EXPECT_EQ(robot.finish("LaserReviewAction", 5), SUCCESS);
    EXPECT_TRUE(robot.notAsked("OpenCloseMove")) << "nothing suspected";
    EXPECT_TRUE(robot.asked("SetMapDrawMode draw_mode=Default"));
    EXPECT_FALSE(robot.has("review_halt_token"));

    robot.erase("Enable_Laser");
    EXPECT_EQ(robot.finish(5), FAILURE);
}

TEST_F(Review, OfASuspectedWireBacksSwingsAndComesBack)
{
    robot.leaf("SuspectWireDetect").succeeds();
    EXPECT_EQ(robot.finish("LaserReviewAction", 400), SUCCESS);
    EXPECT_NEAR(back(), 50 / 1.8, 1.5) << "just over 50 mm";
    EXPECT_EQ(back("90"), back()) << "as many frames forward as back";
    EXPECT_TRUE(robot.inOrder("Rotate angle_deg=360 | Rotate angle_deg=-360 | Rotate angle_deg=360"));
    EXPECT_NEAR(robot.framesOf("Rotate angle_deg=-360"), 40 / 1.2, 1.5);
    EXPECT_NEAR(robot.keys().get<double>("current_yaw_deg"), 0, 1.3);
    EXPECT_EQ(robot.key("not_trace_token"), "SuspectWireDetect");
    EXPECT_TRUE(robot.asked("SetMapDrawMode draw_mode=BlockOnly"));
    EXPECT_FALSE(robot.has("review_halt_token")) << "it stands where it stood";
}

TEST_F(Review, ThatMovedTheRobotEndsWithAStepBackAndARest)
{
    const auto reviewMoving = [this](double mm, double degrees) {
        robot.set("-review_halt_token current_pose=0.0 current_yaw_deg=0.0");
        robot.leaf("SuspectWireDetect").decides([mm, degrees](const Moment& now) {
            now.set("current_pose", mm);
            now.set("current_yaw_deg", degrees);
            return FAILURE;
        });
        EXPECT_EQ(robot.finish("LaserReviewAction", 20), SUCCESS);
        EXPECT_EQ(robot.has("review_halt_token"), robot.framesOf("Back2cm") > 0);
        return robot.has("review_halt_token");
    };
    EXPECT_FALSE(reviewMoving(49, 39));
    EXPECT_TRUE(reviewMoving(51, 0));
    EXPECT_TRUE(reviewMoving(0, 41));
    EXPECT_TRUE(reviewMoving(0, -41));
    EXPECT_EQ(robot.key("disable_layer_marker"), "1");
}

/// The turn that the look behind a blind corner makes after an arc of so many frames, in degrees; none: 0.
class BlindZone : public Review, public testing::WithParamInterface<std::tuple<int, int, bool>>
{};

TEST_P(BlindZone, IsLookedIntoTheFurtherTheShorterTheArcWas)
{
    const auto [arc, turn, on_one_side] = GetParam();
    robot.set("follow_wall_dir", on_one_side ? "true" : "false");
    const std::string slow = on_one_side ? " left_mm_s=" : " right_mm_s=";
    const std::string fast = on_one_side ? " right_mm_s=" : " left_mm_s=";
    robot.succeed("BlindZoneDetected | Rotate");
    // The rear bumper ends the arc; the robot is clear of it afterwards.
    robot.leaf("BumpdirMatch para_b=BackWardsBump").decides([=, this, arc = arc](const Moment&) {
        return robot.framesOf("OpenCloseMove" + fast + "-200") >= arc ? SUCCESS : FAILURE;
    });
    EXPECT_EQ(robot.finish("LaserReviewAction", 400), SUCCESS);
    EXPECT_EQ(robot.framesOf("OpenCloseMove" + slow + "-55" + fast + "-200"), arc);
    EXPECT_EQ(robot.framesOf("OpenCloseMove" + slow + "55" + fast + "200"), arc);
    EXPECT_TRUE(robot.started(turn == 0 ? 0 : 2, "Rotate")) << "there and back";
    if (turn != 0) {
        const int there = on_one_side ? -turn : turn;
        EXPECT_TRUE(robot.inOrder("Rotate angle_deg=" + std::to_string(there) +
                                  " | Rotate angle_deg=" + std::to_string(-there)));
    }
}

INSTANTIATE_TEST_SUITE_P(Arcs, BlindZone,
                         testing::Values(std::tuple(30, 80, true), std::tuple(31, 60, true),
                                         std::tuple(49, 60, true), std::tuple(50, 0, true),
                                         std::tuple(30, 80, false), std::tuple(49, 60, false)));

TEST_F(Review, WithTheCameraScansAtTheSpeedsThatItAsksFor)
{
    robot.leaf("AiNeedScan").fills("wheel_left", -100).fills("wheel_right", -20);
    robot.leaf("ScanConditionFinish")
        .provided([this](const Moment&) { return robot.framesOf("OpenCloseMove left_mm_s=-100") >= 25; })
        .succeeds();
    EXPECT_EQ(robot.finish("AiReviewAction", 400), SUCCESS);
    EXPECT_EQ(robot.framesOf("OpenCloseMove left_mm_s=-100 right_mm_s=-20"), 25);
    EXPECT_EQ(robot.framesOf("OpenCloseMove left_mm_s=100 right_mm_s=20"), 25)
        << "and drives the same arc back";
    EXPECT_EQ(robot.framesOf("OpenCloseMove left_mm_s=-120"), robot.framesOf("OpenCloseMove left_mm_s=120"));
}

}  // namespace
}  // namespace vemra::test
