#include <gtest/gtest.h>

#include "robot/navigation_rig.h"
#include "robot/services/maps/maps.h"

namespace vemra::robot {
namespace {

class MapsRig : public RobotRig
{
public:
    MapsRig() : RobotRig(sketch(room(40, 40)), {{1000, 1000}, {0}}) { install(); }
    ~MapsRig() override { dropTrees(); }

private:
    Localisation pose_{body};
    RobotMap map_{body, pose_};
    MapStore store_;
    MapService maps_{parts, map_, store_, ScenarioStart{}};
    std::vector<Service*> services() override { return {&maps_}; }
};

TEST(Maps, ATaskStartsWithoutThePartsOfTheLastOne)
{
    MapsRig robot;
    const std::vector<std::string> of_a_task = {"subregion_fixed", "subregion_offset_grid",
                                                "subregion_offset_x_fix", "subregion_offset_y_fix",
                                                "mop_dirty"};
    for (const std::string& key : of_a_task) {
        robot.blackboard->set(key, "7");
    }
    robot.blackboard->set("clean_time_for_app", 7);
    ASSERT_TRUE(robot.passes("PresetBlackboard"));
    for (const std::string& key : of_a_task) {
        EXPECT_FALSE(robot.blackboard->contains(key)) << key;
    }
    EXPECT_EQ(robot.text("clean_time_for_app"), "0");
    EXPECT_TRUE(robot.blackboard->contains("map_id_with_order")) << "the map's keys stay";
}

TEST(Maps, ASecondPassKeepsTheWallsAndForgetsWhatWasSwept)
{
    NavigationRig robot{sketch(room(60, 40)), {{500, 900}, {0}}};
    robot.knowHome();
    const auto knowsFloor = [&] {
        const CellIndex here = cellAt({1500, 900});
        return robot.map.occupancy().at(here) == CellState::Free;
    };
    const auto sweep = [&] {
        robot.map.cleaned().follow({{500, 900}, {0}}, true);
        robot.map.cleaned().follow({{520, 900}, {0}}, true);
        return robot.map.cleaned().areaM2() > 0;
    };
    ASSERT_TRUE(knowsFloor());
    ASSERT_TRUE(sweep());
    robot.blackboard->set("reset_map_remain_submap", "true");
    ASSERT_TRUE(robot.passes("ResetMap"));
    EXPECT_TRUE(knowsFloor());
    EXPECT_EQ(robot.map.cleaned().areaM2(), 0);

    ASSERT_TRUE(sweep());
    robot.blackboard->erase("reset_map_remain_submap");
    ASSERT_TRUE(robot.passes("ResetMap"));
    EXPECT_FALSE(knowsFloor());
    EXPECT_EQ(robot.map.cleaned().areaM2(), 0);
}

}  // namespace
}  // namespace vemra::robot
