#include "trees/cleaning/shared.h"

namespace {

// The user has just asked for mopping; `label` tells in the log where it was seen.
Node mop_was_asked_for(const std::string& label)
{
    return FallbackStar(SequenceStar(present("changed_mop_mode"), trace(label + " -> ${changed_mop_mode}"),
                                     key_is_any("changed_mop_mode", {"1", "2"})),
                        SequenceStar(present("need_back_mode_changed"), erase("need_back_mode_changed")));
}

// What the app sent for a selected task is given back, so that the task can be taken up again.
Node was_cleaning()
{
    return FallbackStar(
        key_is("task_state", "cleaning"),
        SequenceStar(key_is("task_state", "area_cleaning"), set_flag("Areas_Clean_Set_List_Ping"),
                     restore("Areas_Clean_Set_List_Ping")),
        SequenceStar(key_is("task_state", "zone_cleaning"), set_flag("Draw_Area_Set_Ping"),
                     set_flag("reset_zone_cleaning"), restore("Draw_Area_Set_Ping"),
                     restore("reset_zone_cleaning")),
        SequenceStar(key_is("task_state", "point_cleaning"), set_flag("Select_Point_Set_Ping"),
                     set_flag("reset_point_cleaning"), restore("Select_Point_Set_Ping"),
                     restore("reset_point_cleaning")));
}

Node visit_station()
{
    return SequenceStar(Delay{50}, set_flag("need_back_station"), go_home());
}

Node give_up()
{
    return SequenceStar(set_flag("PushInfoApp"), play("112"), go_to_standby());
}

// Without a map the station is worth a visit only if the dock is heard from here.
Node listen_for_dock()
{
    return IfThenElseStar(
        DoWhile(DockSignalFilter{}, Sequence(ActionDecorator(NotTrapped{}), SubtreeCondition{"Escape"},
                                             SubtreeCondition{"GoChargingFullRoundTurn"})),
        IfThenElseStar(Inverter(SignalTypeMatch{"${marker_signal_type}", "None"}),
                       SequenceStar(SaySomething{"Identification of field signal..."}, visit_station()),
                       SequenceStar(SaySomething{"do not find signal..."}, give_up())),
        SequenceStar(SaySomething{"Has not reuse info..."}, give_up()));
}

Node begin_away_from_dock()
{
    return choose({{present("robot_standby_flag"), erase("robot_standby_flag")},
                   {FallbackStar(BoolMatch{"${reuse_cleaning}", "true"}, present("start_from_charger_pose")),
                    SequenceStar(SaySomething{"Has  reuse info..."}, visit_station())}},
                  listen_for_dock());
}

Node go_on_with_mop()
{
    return SequenceStar(SaySomething{"clean changed to mop..."}, set_flag("need_back_station"),
                        SetBlackboard{"moved_during_pause", "false"},
                        IfThenElseStar(was_cleaning(),
                                       SequenceStar(SetBlackboard{"task_state", "precleaning"},
                                                    SaySomething{"clean use mop set precleaning"}),
                                       SaySomething{"clean use mop   set nothing"}),
                        go_home());
}

Node begin_anew_with_mop()
{
    return SequenceStar(SaySomething{"clean changed to mop..."}, set_flag("need_back_station"),
                        SubtreeCondition{"AdvCleanComplete"}, Delay{100}, go_home());
}

}  // namespace

// A task with a cloth begins at the station: decides whether the robot must go there first.
TREE(CleanFromChargerJudgment)
{
    return IfThenElseStar(
        SequenceStar(present("use_mop"), uses_mop()),
        SequenceStar(choose({{SequenceStar(key_is("start_from_charger", "false"),
                                           key_is_any("task_state", {"init", "precleaning"})),
                              begin_away_from_dock()},
                             {SequenceStar(key_is("start_from_charger", "false"),
                                           mop_was_asked_for("changed_mop_mode")),
                              go_on_with_mop()},
                             {SequenceStar(Inverter(key_is("start_from_charger", "false")),
                                           mop_was_asked_for("changed_mop_mode1")),
                              begin_anew_with_mop()}}),
                     erase("robot_indock")),
        erase("robot_indock"));
}
