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
    return without_sensor("PolygonVirtualWall",
                          FallbackStar(straight_when_near(), along_path(), Inverter(NotTrapped{}),
                                       Sequence(not_looped(), SubtreeCondition{"NavigateFollowWall"})));
}

// --- how the move ended --------------------------------------------------------------------------

// A fresh plan is worth another try when it still begins with the temporary bridge.
Node worth_another_try()
{
    return FallbackStar(
        with_sensor("ChargerVirtualWall",
                    SequenceStar(SaySomething{"仍在虚拟墙内，重新进行搜索导航过程"},
                                 AwesomeSearch{.output_point = "navi_target_point",
                                               .region = "${current_subregion}",
                                               .search_mode = "Target",
                                               .source_point = "${current_coord}",
                                               .target = "${navi_target_point}"},
                                 CheckPathSegment{.input_navi_path = "${navigation_path_segments}"},
                                 FallbackStar(Inverter(PathSegIsVector{}),
                                              ForceFailure(key::out_vw_when_cross_tmp_bg.set(0))),
                                 read_bridge_type(), bridge_is("TMP"))),
        SequenceStar(key::out_vw_when_cross_tmp_bg.take()));
}

// Fails when another try is worth while.
Node no_more_to_try()
{
    return Fallback(SequenceStar(key::trapped_in_real_block.is_true(), Delay{5}),
                    bridge_crossed(key::navi_target_point, "0"), Inverter(worth_another_try()));
}

Node tries()
{
    return BB_Precondition(key::trapped_in_real_block,
                           RetryUntilSuccesful(5, FallbackStar(move(), no_more_to_try())));
}

// --- stuck inside --------------------------------------------------------------------------------

Node publish(const Key& kind)
{
    return SequenceStar(kind.flag(), Delay{50});
}

// A probe of the sensors tells whether it is the virtual wall or a real obstacle that holds the robot.
Node report_trap()
{
    return SequenceStar(SensorProbeBump{.out_str = "sensor_probe_trap"},
                        IfThenElseStar(key::sensor_probe_trap.is("PolygonTrap"),
                                       publish(key::polygon_vw_trapped), publish(key::automode_trapped)),
                        key::have_trapped_type.flag());
}

Node outcome()
{
    return FallbackStar(
        SequenceStar(bridge_crossed(key::navi_target_point, "0"), SaySomething{"过临时桥成功，已在虚拟墙外"}),
        SequenceStar(goal_within("50"), SaySomething{"过临时桥成功，离临时桥终点很近了"}),
        ForceFailure(SaySomething{"过临时桥失败"}));
}

}  // namespace

// Up to five tries to get out of the virtual wall. When they have failed and the robot is still inside
// without a way out, that is a trap and is reported once. The place where the robot then stands is the
// result.
Node cross_tmp_bridge()
{
    return SubTree("CrossTmpBridge",
                   DoWhile(key::trapped_in_real_block.kept(), key::out_vw_when_cross_tmp_bg.kept(),
                           SequenceStar(SaySomething{"开始过临时桥"}, key::current_draw_mode.present(),
                                        key::current_draw_mode.copy_to(key::current_draw_copy),
                                        key::trapped_in_real_block.set("false"),
                                        FallbackStar(tries(), key::have_trapped_type.present(),
                                                     Inverter(PromptInVirtualWall{}), report_trap()),
                                        SetMapDrawMode{.draw_mode = "${current_draw_copy}"}, outcome())));
}

}  // namespace vemra::trees
