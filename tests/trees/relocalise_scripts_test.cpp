#include <array>
#include <functional>
#include <random>

#include "trees/relocalising_robot.h"

namespace vemra::test {
namespace {

/// SLAM as it never should be: it says anything at any time, the floor and the body do what they like, and
/// the mode changes in between.
class WildScript
{
public:
    explicit WildScript(unsigned seed) : random_(seed) {}

    void frame(RelocalisingRobot& robot)
    {
        constexpr unsigned kOften = 6;
        if (random_() % kOften == 0)
            happen(robot);
        robot.tick();
    }

private:
    void happen(RelocalisingRobot& robot)
    {
        static constexpr const char* kWords[] = {"rotate_reloc_finish",   "ready_exp_again",  "static_exp",
                                                 "relocalize_start_move", "exp_reloc_result", "slam_exp_pose",
                                                 "reloc_back_pose"};
        static constexpr NodeStatus kDrives[] = {SUCCESS, FAILURE, RUNNING};
        const auto any = [this](const auto& list) { return list[random_() % std::size(list)]; };
        const std::function<void()> acts[] = {
            [&] { robot.sayEnough(); },
            [&] {
                robot.set("exp_reloc_result", any(std::array{"true", "false", "perhaps", ""}));
            },
            [&] { robot.set("ready_exp_again"); },
            [&] { robot.sendTo(static_cast<int>(random_() % 4) * 1000); },
            [&] { robot.set("static_exp"); },
            [&] { robot.erase(any(kWords)); },
            [&] { robot.has_way = !robot.has_way; },
            [&] { robot.drives = any(kDrives); },
            [&] { robot.trapped = random_() % 3 == 0; },
            [&] {
                robot.halt();
                EXPECT_TRUE(robot.map == "end" && robot.key("robot_trajectory") == "of the task");
                robot.begin();
            }};
        any(acts)();
    }

    std::mt19937 random_;
};

/// SLAM as it should be, from wherever the talk stands: its words are levels. True: the tree came back from a
/// place with a verdict within so many frames.
bool bringToAnEnd(RelocalisingRobot& robot, int at_most)
{
    robot.has_way = true;
    robot.drives = SUCCESS;
    robot.trapped = false;
    robot.set("-exp_reloc_result -ready_exp_again -rotate_reloc_finish reloc_back_pose=0");
    bool asked = false;
    for (int i = 0; i < at_most; ++i) {
        robot.answer.clear();
        robot.tick();
        if (robot.answer == "back_origin" || robot.answer == "cant_back_origin")
            return true;
        asked = !robot.first_turn && (asked || robot.answer == "reach_reloc");
        // Where it waits for a verdict on what was asked before, it gets one at last.
        const bool offered = robot.has("relocalize_start_move") || robot.has("static_exp");
        if (asked || (!robot.first_turn && offered && i % 100 == 99))
            robot.sayVerdict(true);
        else if (robot.first_turn)
            robot.sayEnough();
        else if (!offered)
            robot.sendTo(2000);
    }
    return false;
}

TEST(RelocalisingScripts, NoneOf500LeavesTheTreeStandingForEver)
{
    RelocalisingRobot robot;
    for (unsigned seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE(seed);
        WildScript script(seed);
        robot.begin();
        for (int i = 0; i < 120; ++i)
            script.frame(robot);
        ASSERT_TRUE(bringToAnEnd(robot, 1000));
        robot.slam = SUCCESS;
        ASSERT_EQ(robot.finish(150), SUCCESS);
        ASSERT_EQ(robot.map, "end");
        ASSERT_EQ(robot.key("robot_trajectory"), "of the task");
    }
}

}  // namespace
}  // namespace vemra::test
