#include "trees/cleaning/shared.h"

namespace {

// A robot that was moved while it waited for charge does not know its place, nor that of its dock.
Node settle_move_while_charging()
{
    return when(key::moved_during_lowpower.present(), key::moved_during_lowpower.erase(),
                when(key::task_state.is_any({"lowpower", "area_lowpower", "zone_lowpower", "point_lowpower"}),
                     key::moved_during_pause.set("true"), key::moved_flag_for_calc_charger.flag()));
}

// A stored map may be taken over without a look around, as the dock's place on it is known.
Node offer_stored_map()
{
    return ForceSuccess(
        Named("force reuse", SequenceStar(when(key::task_state.is("init"), UpdateReuseAppMap{"on_charger"},
                                               key::mica_on_charger.set("true")),
                                          IsReuseInfoExist{}, key::reuse_from_charger.set("false"),
                                          key::current_pose.copy_to(key::on_charger_pose))));
}

Node leave_dock()
{
    return SequenceStar(key::start_from_charger.set("true"), key::record_charge_pose_start.set("true"),
                        key::reuse_relocalize_just_in_init.set("true"), offer_stored_map(), SlamPrestart{},
                        Delay{20}, erase(key::moved_flag_for_calc_charger, key::odom_pos_before),
                        key::current_odom.copy_to(key::odom_pos_before), SubtreeCondition{"PreAutoOnCharger"},
                        key::clean_start_vw_check.flag(), SaySomething{"退出后退动作1"});
}

// Off the dock, its pose still holds where nobody has moved the robot since.
Node keep_dock_pose_or_not(const char* kept)
{
    return IfThenElseStar(SequenceStar(FallbackStar(SequenceStar(key::record_charge_pose_start.is_true(),
                                                                 key::task_state.is("init"),
                                                                 SaySomething{"need to calc charge pose..."}),
                                                    key::from_charge_fake_flag.present()),
                                       key::robot_moved.is("false")),
                          SequenceStar(key::start_from_charger.set("true"), SaySomething{kept}),
                          key::start_from_charger.set("false"));
}

Node no_turn_needed()
{
    return SequenceStar(key::rotate_target_angle.set(0), SaySomething{"退出后退动作2"});
}

Node back_off_beside_dock()
{
    return SequenceStar(IfThenElseStar(switched_off(), ForceSuccess(Frameout(100, GoBackwards{})),
                                       ForceSuccess(Frameout(300, GoBackwards{}))),
                        Stop{}, keep_dock_pose_or_not("charge pose force retain1..."), no_turn_needed());
}

Node stay()
{
    return SequenceStar(keep_dock_pose_or_not("charge pose force retain2..."), no_turn_needed());
}

}  // namespace

// The start of a task: leaves the dock, or backs off if it is near, and decides whether the place where the
// robot stands by then tells where the dock is.
TREE(AdvPreAutoOnCharger)
{
    return Sequence(
        first_escape(),
        optionally(SaySomething{"进入后退动作"},
                   erase(key::on_charger_pose, key::reuse_from_charger, key::clean_start_vw_check),
                   SetMapDrawMode{.draw_mode = "None"}, key::moved_flag_for_calc_charger.erase(),
                   settle_move_while_charging(),
                   choose({{FallbackStar(GotCharger{}, key::just_on_charger.present()), leave_dock()},
                           {DoesRobotGetChargerSigCheck{}, back_off_beside_dock()}},
                          stay())));
}
