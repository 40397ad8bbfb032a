#include "trees/cleaning/shared.h"

namespace {

// The user has just asked for mopping; `label` tells in the log where it was seen.
Node mop_was_asked_for(const std::string& label)
{
    return FallbackStar(
        SequenceStar(key::changed_mop_mode.present(), trace(label + " -> ${changed_mop_mode}"),
                     key::changed_mop_mode.is_any({"1", "2"})),
        SequenceStar(key::need_back_mode_changed.take()));
}

// What the app sent for a selected task is given back, so that the task can be taken up again.
Node was_cleaning()
{
    return FallbackStar(
        key::task_state.is("cleaning"),
        SequenceStar(key::task_state.is("area_cleaning"), key::Areas_Clean_Set_List_Ping.flag(),
                     restore(key::Areas_Clean_Set_List_Ping, key::Areas_Clean_Set_List_Ping_bak)),
        SequenceStar(key::task_state.is("zone_cleaning"), key::Draw_Area_Set_Ping.flag(),
                     key::reset_zone_cleaning.flag(),
                     restore(key::Draw_Area_Set_Ping, key::Draw_Area_Set_Ping_bak),
                     restore(key::reset_zone_cleaning, key::reset_zone_cleaning_bak)),
        SequenceStar(key::task_state.is("point_cleaning"), key::Select_Point_Set_Ping.flag(),
                     key::reset_point_cleaning.flag(),
                     restore(key::Select_Point_Set_Ping, key::Select_Point_Set_Ping_bak),
                     restore(key::reset_point_cleaning, key::reset_point_cleaning_bak)));
}

Node visit_station()
{
    return SequenceStar(Delay{50}, key::need_back_station.flag(), go_home());
}

Node give_up()
{
    return SequenceStar(key::PushInfoApp.flag(), play(112), go_to_standby());
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
    return choose(
        {{key::robot_standby_flag.present(), key::robot_standby_flag.erase()},
         {FallbackStar(BoolMatch{"${reuse_cleaning}", "true"}, key::start_from_charger_pose.present()),
          SequenceStar(SaySomething{"Has  reuse info..."}, visit_station())}},
        listen_for_dock());
}

Node go_on_with_mop()
{
    return SequenceStar(SaySomething{"clean changed to mop..."}, key::need_back_station.flag(),
                        key::moved_during_pause.set("false"),
                        IfThenElseStar(was_cleaning(),
                                       SequenceStar(key::task_state.set("precleaning"),
                                                    SaySomething{"clean use mop set precleaning"}),
                                       SaySomething{"clean use mop   set nothing"}),
                        go_home());
}

Node begin_anew_with_mop()
{
    return SequenceStar(SaySomething{"clean changed to mop..."}, key::need_back_station.flag(),
                        SubtreeCondition{"AdvCleanComplete"}, Delay{100}, go_home());
}

}  // namespace

// A task with a cloth begins at the station: decides whether the robot must go there first.
TREE(CleanFromChargerJudgment)
{
    return IfThenElseStar(
        Sequence(key::use_mop.present(), uses_mop()),
        SequenceStar(
            choose({{Sequence(key::start_from_charger.is("false"),
                              key::task_state.is_any({"init", "precleaning"})),
                     begin_away_from_dock()},
                    {SequenceStar(key::start_from_charger.is("false"), mop_was_asked_for("changed_mop_mode")),
                     go_on_with_mop()},
                    {SequenceStar(Inverter(key::start_from_charger.is("false")),
                                  mop_was_asked_for("changed_mop_mode1")),
                     begin_anew_with_mop()}}),
            key::robot_indock.erase()),
        key::robot_indock.erase());
}
