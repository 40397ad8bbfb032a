#include <gmock/gmock.h>

#include "behaviortree_cpp/xml_parsing.h"
#include "robot/navigation_rig.h"

namespace vemra::robot {
namespace {

using BT::NodeStatus;

// A wall follow in the sample flat, as a task has it: behind the escape.
TEST(FollowInTheFlat, IsInterruptedByEachTroubleOnceAndGoesOn)
{
    NavigationRig robot(readHome(VEMRA_SOURCE_DIR "/homes/flat/flat.yaml").home, {{2500, 2000}, {0}},
                        VEMRA_LIB_DIR "/libvemra_tree.so");
    robot.blackboard->set("follow_wall_dir", "true");
    robot.passes("SetMapDrawMode", {{"draw_mode", "Default"}});
    robot.tree = BT::buildTreeFromText(robot.factory,
                                       R"(<root><BehaviorTree ID="Task"><Sequence>
          <ForceSuccess><SubtreeCondition subtree_file_path="EscapeCoat.xml"/></ForceSuccess>
          <SubtreeCondition subtree_file_path="FollowWallProc.xml"/>
        </Sequence></BehaviorTree></root>)",
                                       robot.blackboard);
    // How often the task ended in so many frames, and how far it drove.
    double driven = 0;
    const auto ends_in = [&](int frames) {
        const double before = robot.body.runMm();
        int ends = 0;
        for (int i = 0; i < frames; ++i) {
            ends += robot.frame() == NodeStatus::RUNNING ? 0 : 1;
        }
        driven = robot.body.runMm() - before;
        return ends;
    };
    EXPECT_EQ(ends_in(3000), 0) << "no trouble, no escape";
    EXPECT_GT(driven, 8000);
    EXPECT_FALSE(robot.bumped);

    robot.body.holdFast(400);
    EXPECT_EQ(ends_in(300), 1);
    EXPECT_FALSE(robot.body.heldFast());
    EXPECT_EQ(ends_in(1000), 0);
    EXPECT_GT(driven, 2500);

    robot.body.lift();
    EXPECT_EQ(ends_in(200), 0);
    EXPECT_EQ(robot.text("trapped"), "true");
    robot.body.setDown({{2500, 2500}, {90}});
    EXPECT_EQ(ends_in(100), 1);
    EXPECT_EQ(robot.text("trapped"), "false");
    EXPECT_EQ(ends_in(1000), 0);
    EXPECT_GT(driven, 2500);
    EXPECT_TRUE(robot.state.errors.empty());
}

}  // namespace
}  // namespace vemra::robot
