#include "trees/navigation/cross_bridge.h"

namespace vemra::trees {

namespace {

// On the step itself the clouds would take its edge for an obstacle, and the robot needs its speed to get
// over. The place where it sets out is kept: it is the near end of the step as learnt by this crossing.
Node goto_target_pt()
{
    const SubtreeCondition run{"NaviOnePointProc"};
    return SubTree(
        "goto_target_pt",
        IfThenElseStar(
            key::ready_to_cross.present(),
            SequenceStar(key::current_pose.copy_to(key::update_bridge_from), key::ready_to_cross.erase(),
                         without_sensor("LaserTofPointcloud", sensor_off("SideBrushPointcloud"),
                                        key::keep_normal_speed.flag(), run)),
            run));
}

// A second try begins where the first one did.
Node back_to_start_of_last_try()
{
    return optionally(key::get_new_brg.present(),
                      IfThenElseStar(key::modify_from_pt.present(), aim_at(key::modify_from_pt),
                                     aim_at(key::bridge_from_point)),
                      key::get_new_brg.erase(), goto_target_pt());
}

// Where the step is better taken at another place, the robot goes there first.
Node aim_across()
{
    return IfThenElseStar(NeedToModifyBridge{.i_bridge_from_pt = "${bridge_from_point}",
                                             .i_bridge_to_pt = "${bridge_to_point}",
                                             .o_modified_from_pt = "modify_from_pt",
                                             .o_modified_to_pt = "modify_to_pt"},
                          SequenceStar(key::get_new_brg.flag(), aim_at(key::modify_from_pt), goto_target_pt(),
                                       aim_at(key::modify_to_pt)),
                          aim_at(key::bridge_to_point));
}

// Only a run to the better place may fail, and gets a second try.
Node walk_over()
{
    return RetryUntilSuccesful(
        2, SequenceStar(back_to_start_of_last_try(), aim_across(), key::ready_to_cross.flag(),
                        FallbackStar(goto_target_pt(), key::get_new_brg.absent())));
}

// Clearly nearer to the far end than to the near one counts as across.
Node past_half_way()
{
    return SequenceStar(
        PointToPointDist{
            .dist_mm = "dist_from", .point_mm_a = "${bridge_from_point}", .point_mm_b = "${current_pose}"},
        PointToPointDist{
            .dist_mm = "dist_to", .point_mm_a = "${bridge_to_point}", .point_mm_b = "${current_pose}"},
        key::dist_from.above("${dist_to} + 150"));
}

// The ends of the step become those that the robot has really used.
Node learn_step()
{
    return UpdateStepBridge{.bridge_from = "${update_bridge_from}",
                            .bridge_to = "${current_pose}",
                            .origin_bridge = "${navigation_bridge}"};
}

Node give_step_up()
{
    return SequenceStar(InvalidStepBridge{.i_bridge = "${navigation_bridge}"},
                        ForceSuccess(SubtreeCondition{"Back2cm.xml"}),
                        ForceFailure(key::step_bridge_invalid.flag()));
}

}  // namespace

// Over a step in the floor. The outcome is left as a mark, which for a step takes the place of the cost.
Node cross_step()
{
    return SubTree(
        "CrossStep",
        FallbackStar(
            Sequence(MakeMap{.roi = "${current_subregion}"}, BridgeValid{.bridge = "${navigation_bridge}"},
                     SequenceStar(SetMapDrawMode{.draw_mode = "BlockOnly"}, key::get_new_brg.erase(),
                                  FallbackStar(walk_over(), past_half_way()), key::step_bridge_valid.flag(),
                                  learn_step())),
            give_step_up()));
}

}  // namespace vemra::trees
