#include "trees/cleaning/shared.h"

namespace {

// A robot that was moved while it waited for charge does not know its place, nor that of its dock.
Node settle_move_while_charging()
{
    return when(
        present("moved_during_lowpower"), erase("moved_during_lowpower"),
        when(key_is_any("task_state", {"lowpower", "area_lowpower", "zone_lowpower", "point_lowpower"}),
             SetBlackboard{"moved_during_pause", "true"}, set_flag("moved_flag_for_calc_charger")));
}

// A stored map may be taken over without a look around, as the dock's place on it is known.
Node offer_stored_map()
{
    return ForceSuccess(
        Named("force reuse", SequenceStar(when(key_is("task_state", "init"), UpdateReuseAppMap{"on_charger"},
                                               SetBlackboard{"mica_on_charger", "true"}),
                                          IsReuseInfoExist{}, SetBlackboard{"reuse_from_charger", "false"},
                                          BlackboardCopy{"current_pose", "on_charger_pose"})));
}

Node leave_dock()
{
    return SequenceStar(
        SetBlackboard{"start_from_charger", "true"}, SetBlackboard{"record_charge_pose_start", "true"},
        SetBlackboard{"reuse_relocalize_just_in_init", "true"}, offer_stored_map(), SlamPrestart{}, Delay{20},
        erase("moved_flag_for_calc_charger"), erase("odom_pos_before"),
        BlackboardCopy{"current_odom", "odom_pos_before"}, SubtreeCondition{"PreAutoOnCharger"},
        set_flag("clean_start_vw_check"), SaySomething{"退出后退动作1"});
}

// Off the dock, its pose still holds where nobody has moved the robot since.
Node keep_dock_pose_or_not(const char* kept)
{
    return IfThenElseStar(SequenceStar(FallbackStar(SequenceStar(key_is_true("record_charge_pose_start"),
                                                                 key_is("task_state", "init"),
                                                                 SaySomething{"need to calc charge pose..."}),
                                                    present("from_charge_fake_flag")),
                                       key_is("robot_moved", "false")),
                          SequenceStar(SetBlackboard{"start_from_charger", "true"}, SaySomething{kept}),
                          SetBlackboard{"start_from_charger", "false"});
}

Node no_turn_needed()
{
    return SequenceStar(SetBlackboard{"rotate_target_angle", "0"}, SaySomething{"退出后退动作2"});
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
        optionally(SaySomething{"进入后退动作"}, erase("on_charger_pose"), erase("reuse_from_charger"),
                   erase("clean_start_vw_check"), SetMapDrawMode{.draw_mode = "None"},
                   erase("moved_flag_for_calc_charger"), settle_move_while_charging(),
                   choose({{FallbackStar(GotCharger{}, present("just_on_charger")), leave_dock()},
                           {DoesRobotGetChargerSigCheck{}, back_off_beside_dock()}},
                          stay())));
}
