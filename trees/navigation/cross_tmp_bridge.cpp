#include "trees/navigation/cross_bridge.h"
#include "trees/navigation/follow_wall.h"
#include "trees/navigation/goal.h"

namespace vemra::trees {

namespace {

// --- the move ------------------------------------------------------------------------------------

Node straight_when_near()
{
    return SequenceStar(goal_within("150"), SetMapDrawMode{.draw_mode = "ClearOnly"},
                        SubtreeCondition{"NaviOnePointProc"});
}

Node along_path()
{
    return Sequence(SetMapDrawMode{.draw_mode = "None"}, SubtreeCondition{"Escape.xml"},
                    back_off_on_contact(), stop_for_cliff_sensors(),
                    DwaLocalPlanner{.path = "${navigation_path}"}, MakeMap{.roi = "${gridmap_limit}"});
}

// The wall that the bridge leads out of must not stop the robot. Real obstacles are followed; where the
// obstacle shuts the robot in, the follow leaves its mark and the tries end.
Node move()
{
    return DoWhile(without_sensor("PolygonVirtualWall"),
                   FallbackStar(straight_when_near(), along_path(), Inverter(NotTrapped{}),
                                Sequence(not_looped(), SubtreeCondition{"NavigateFollowWall"})));
}

// --- how the move ended --------------------------------------------------------------------------

// A fresh plan is worth another try when it still begins with the temporary bridge.
Node worth_another_try()
{
    return FallbackStar(
        DoWhile(with_charger_walls(),
                SequenceStar(SaySomething{"仍在虚拟墙内，重新进行搜索导航过程"},
                             AwesomeSearch{.output_point = "navi_target_point",
                                           .region = "${current_subregion}",
                                           .search_mode = "Target",
                                           .source_point = "${current_coord}",
                                           .target = "${navi_target_point}"},
                             CheckPathSegment{.input_navi_path = "${navigation_path_segments}"},
                             FallbackStar(Inverter(PathSegIsVector{}),
                                          ForceFailure(SetBlackboard{"out_vw_when_cross_tmp_bg", "0"})),
                             read_bridge_type(), bridge_is("TMP"))),
        SequenceStar(present("out_vw_when_cross_tmp_bg"), erase("out_vw_when_cross_tmp_bg")));
}

// Fails when another try is worth while.
Node no_more_to_try()
{
    return Fallback(SequenceStar(key_is_true("trapped_in_real_block"), Delay{5}),
                    bridge_crossed("navi_target_point", "0"), Inverter(worth_another_try()));
}

Node tries()
{
    return BB_Precondition("trapped_in_real_block",
                           RetryUntilSuccesful(5, FallbackStar(move(), no_more_to_try())));
}

// --- stuck inside --------------------------------------------------------------------------------

Node publish(const char* kind)
{
    return SequenceStar(set_flag(kind), Delay{50});
}

// A probe of the sensors tells whether it is the virtual wall or a real obstacle that holds the robot.
Node report_trap()
{
    return SequenceStar(SensorProbeBump{.out_str = "sensor_probe_trap"},
                        IfThenElseStar(key_is("sensor_probe_trap", "PolygonTrap"),
                                       publish("polygon_vw_trapped"), publish("automode_trapped")),
                        set_flag("have_trapped_type"));
}

Node outcome()
{
    return FallbackStar(
        SequenceStar(bridge_crossed("navi_target_point", "0"), SaySomething{"过临时桥成功，已在虚拟墙外"}),
        SequenceStar(goal_within("50"), SaySomething{"过临时桥成功，离临时桥终点很近了"}),
        ForceFailure(SaySomething{"过临时桥失败"}));
}

}  // namespace

// Up to five tries to get out of the virtual wall. When they have failed and the robot is still inside
// without a way out, that is a trap and is reported once. The place where the robot then stands is the
// result.
Node cross_tmp_bridge()
{
    return SubTree(
        "CrossTmpBridge",
        DoWhile(StackBlackboard{"trapped_in_real_block"}, StackBlackboard{"out_vw_when_cross_tmp_bg"},
                SequenceStar(SaySomething{"开始过临时桥"}, present("current_draw_mode"),
                             BlackboardCopy{.source = "current_draw_mode", .target = "current_draw_copy"},
                             SetBlackboard{"trapped_in_real_block", "false"},
                             FallbackStar(tries(), present("have_trapped_type"),
                                          Inverter(PromptInVirtualWall{}), report_trap()),
                             SetMapDrawMode{.draw_mode = "${current_draw_copy}"}, outcome())));
}

}  // namespace vemra::trees
