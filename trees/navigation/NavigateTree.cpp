#include "trees/idioms.h"

namespace {

// The passage is too narrow for the point clouds, which would see nothing but obstacles in it. A bump does
// not stop the run, it is only written down, and after the pause for the cliff sensors the robot goes on: to
// turn back in the passage would be worse.
Node narrow_path_navi()
{
    return SubTree(
        "NarrowPathNavi",
        Sequence(
            SubtreeCondition{"Escape.xml"},
            without_sensor(
                "LaserTofPointcloud", sensor_off("LdsPointcloud"),
                StepBridgeCrossed{.crossed_steps = "crossed_steps", .navi_path = "${navi_path_cp}"},
                CheckClifBump{.out_bump_dir = "bump_dir"},
                Sequence(stop_for_cliff_sensors(Inverter(Delay{10})), BridgeNavi{.path = "${navi_path_cp}"})),
            key::navi_to_target.set("true")));
}

Node report_crossed()
{
    return SequenceStar(SaySomething{"Cross Bridge Success"}, key::cross_bridge_success.flag(),
                        erase(key::crossed_steps, key::navi_one_point_target_point));
}

Node report_failed()
{
    return SequenceStar(key::navi_to_target.set("false"),
                        erase(key::bridges_crossing, key::crossed_steps, key::navi_one_point_target_point,
                              key::cross_bridge_success),
                        ForceFailure(SaySomething{"过桥失败"}));
}

}  // namespace

// Runs the narrow path of the bridge in hand, from one end to the other.
TREE(NavigateTree)
{
    return SequenceStar(
        SequenceStar(erase(key::cross_bridge_success, key::navi_to_target),
                     BridgePathTrans{.bridge = "${navigation_bridge}", .o_path = "navi_path_cp"},
                     IfThenElseStar(narrow_path_navi(), report_crossed(), report_failed()),
                     key::navi_to_target.present()),
        BoolMatch{.bool_a = "${navi_to_target}", .bool_b = "true"}, key::bridges_crossing.erase(),
        key::cross_bridge_success.flag());
}
