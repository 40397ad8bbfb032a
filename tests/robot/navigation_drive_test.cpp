#include <gmock/gmock.h>

#include "robot/navigation_rig.h"

namespace vemra::robot {
namespace {

const std::filesystem::path kFlat = std::filesystem::path(VEMRA_SOURCE_DIR) / "homes/flat/flat.yaml";
const std::string kTrees = VEMRA_LIB_DIR "/libvemra_tree.so";

constexpr PoseMm kLivingRoom{{2700, 2600}, {-90}};
constexpr PointMm kBathroom{7900, 5500};

struct FlatTest : testing::Test
{
    NavigationRig robot{readHome(kFlat).home, kLivingRoom, kTrees};
};

TEST_F(FlatTest, GotoPointDrivesFromTheLivingRoomToTheBathroom)
{
    robot.knowHome();
    ASSERT_TRUE(robot.search("TargetNoUnknown", kBathroom));
    robot.enter("GotoPoint");
    EXPECT_EQ(robot.run(4000), BT::NodeStatus::SUCCESS) << robot.text("current_pose");
    EXPECT_LT(robot.away(kBathroom), 110);
    EXPECT_FALSE(robot.bumped);
}

TEST_F(FlatTest, NavigateProcFindsTheWayOverFloorItHasNotSeen)
{
    for (int tries = 0; tries < 5 && robot.away(kBathroom) > 110; ++tries) {
        ASSERT_TRUE(robot.search("Target", kBathroom));
        robot.enter("NavigateProc");
        robot.run(5000);
        std::printf("try %d: %s frames %d bump %d\n", tries, robot.text("current_pose").c_str(),
                    robot.frames_run, robot.bumped);
    }
    EXPECT_LT(robot.away(kBathroom), 110);
    for (auto& m : robot.met)
        std::printf("met %s\n", m.c_str());
}

}  // namespace
}  // namespace vemra::robot
