#include "trees/dock/go_charging.h"

#include "trees/conditions.h"

namespace vemra::trees {

namespace {

Node all_off()
{
    return SetCleanSystem{.Brush = "0", .Fan = "0", .Pump = "0", .SideBrush = "0"};
}

}  // namespace

Node until_contact(const ContactSwitch& run)
{
    if (!run.keeps_search)
        return IfThenElse(GotCharger{}, SequenceStar(Stop{}, all_off(), Delay{50}), run.search);
    return IfThenElseWithoutHalt(
        GotCharger{},
        IfThenElse(key_is_true("got_charger_force_halt"),
                   SequenceStar(SetBlackboard{"got_charger_force_halt", "false"}, Delay{50}),
                   DoWhile(Stop{}, all_off(), Delay{50})),
        run.search);
}

Nodes beside_search()
{
    return row(DockSignalFilter{}, TraceLogger{}, SetBlackboard{"got_charger_force_halt", "true"},
               BlackboardCopy{"current_pose", "go_charging_pose_token"},
               SetCleanSystem{.Brush = "60", .Fan = "55", .Pump = "0", .SideBrush = "35"},
               TemporarilyDisableSensor{.lock_status = "false", .sensor = "ChargerVirtualWall"},
               Fallback(absent("SFC_trapped"),
                        TemporarilyDisableSensor{.lock_status = "false", .sensor = "PolygonVirtualWall"}));
}

Nodes begin_run()
{
    return row(default_from("origin_point", "current_coord"), erase("have_trapped_type"),
               when(SequenceStar(PromptInVirtualWall{}, absent("SFC_trapped"), absent("have_trapped_type")),
                    set_flag("polygon_vw_trapped"), set_flag("have_trapped_type"), Delay{50}));
}

// --- the end of a run ---------------------------------------------------------------------------

Node return_to_origin(const char* trap_tolerance)
{
    const auto shut_in =
        report_trap_once(IfThenElseStar(AreaCheck{.source_point = "${current_coord}", .threshold = "400"},
                                        set_flag("close_door_trapped"), set_flag("automode_trapped")),
                         ValidateAllBridges{}, set_flag("have_trapped_type"), Delay{50});
    const auto door_was_closed = report_trap_once(ValidateAllBridges{}, set_flag("close_door_trapped"),
                                                  set_flag("have_trapped_type"), Delay{50});
    return IfThenElseStar(SequenceStar(find_track_near_origin(), search_way_to_origin("1")),
                          ForceFailure(FallbackStar(SubtreeCondition{"BackToOrigin"}, door_was_closed)),
                          ForceFailure(SubTree("TrapJug", tell_what_bars_way(trap_tolerance, shut_in))));
}

// --- exploring ----------------------------------------------------------------------------------

Nodes after_exploring(const char* search_tree, const Nodes& say_found)
{
    return row(SequenceStar(present("explore_found_charger"), erase("explore_found_charger"),
                            SubtreeCondition{search_tree}),
               SequenceStar(no_signal_known(),
                            Fallback(SubtreeCondition{"ReadyToSearchForCharger"},
                                     ForceFailure(SubtreeCondition{"BackToOrigin"})),
                            say_found, SubtreeCondition{search_tree}));
}

}  // namespace vemra::trees
