#include "trees/idioms.h"

namespace {

// The passage is too narrow for the point clouds, which would see nothing but obstacles in it. A bump does
// not stop the run, it is only written down, and after the pause for the cliff sensors the robot goes on: to
// turn back in the passage would be worse.
Node narrow_path_navi()
{
    return SubTree(
        "NarrowPathNavi",
        Sequence(SubtreeCondition{"Escape.xml"},
                 DoWhile(TemporarilyDisableSensor{.lock_status = "false", .sensor = "LaserTofPointcloud"},
                         TemporarilyDisableSensor{.lock_status = "false", .sensor = "LdsPointcloud"},
                         StepBridgeCrossed{.crossed_steps = "crossed_steps", .navi_path = "${navi_path_cp}"},
                         CheckClifBump{.out_bump_dir = "bump_dir"},
                         Sequence(stop_for_cliff_sensors(Inverter(Delay{10})),
                                  BridgeNavi{.path = "${navi_path_cp}"})),
                 SetBlackboard{"navi_to_target", "true"}));
}

Node report_crossed()
{
    return SequenceStar(SaySomething{"Cross Bridge Success"}, set_flag("cross_bridge_success"),
                        erase("crossed_steps"), erase("navi_one_point_target_point"));
}

Node report_failed()
{
    return SequenceStar(SetBlackboard{"navi_to_target", "false"}, erase("bridges_crossing"),
                        erase("crossed_steps"), erase("navi_one_point_target_point"),
                        erase("cross_bridge_success"), ForceFailure(SaySomething{"过桥失败"}));
}

}  // namespace

// Runs the narrow path of the bridge in hand, from one end to the other.
TREE(NavigateTree)
{
    return SequenceStar(
        SequenceStar(erase("cross_bridge_success"), erase("navi_to_target"),
                     BridgePathTrans{.bridge = "${navigation_bridge}", .o_path = "navi_path_cp"},
                     IfThenElseStar(narrow_path_navi(), report_crossed(), report_failed()),
                     present("navi_to_target")),
        BoolMatch{.bool_a = "${navi_to_target}", .bool_b = "true"}, erase("bridges_crossing"),
        set_flag("cross_bridge_success"));
}
