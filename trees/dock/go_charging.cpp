#include "trees/dock/go_charging.h"

#include "trees/idioms.h"

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
    return IfThenElseWithoutHalt(GotCharger{},
                                 IfThenElse(key::got_charger_force_halt.is_true(),
                                            SequenceStar(key::got_charger_force_halt.set("false"), Delay{50}),
                                            DoWhile(Stop{}, all_off(), Delay{50})),
                                 run.search);
}

Nodes beside_search()
{
    return row(DockSignalFilter{}, TraceLogger{}, key::got_charger_force_halt.set("true"),
               key::current_pose.copy_to(key::go_charging_pose_token),
               SetCleanSystem{.Brush = "60", .Fan = "55", .Pump = "0", .SideBrush = "35"},
               sensor_off("ChargerVirtualWall"),
               Fallback(key::SFC_trapped.absent(), sensor_off("PolygonVirtualWall")));
}

Nodes begin_run()
{
    return row(
        key::origin_point.default_from(key::current_coord), key::have_trapped_type.erase(),
        when(Sequence(PromptInVirtualWall{}, key::SFC_trapped.absent(), key::have_trapped_type.absent()),
             key::polygon_vw_trapped.flag(), key::have_trapped_type.flag(), Delay{50}));
}

// --- the end of a run ---------------------------------------------------------------------------

Node return_to_origin(const char* trap_tolerance)
{
    const auto shut_in =
        report_trap_once(IfThenElseStar(AreaCheck{.source_point = "${current_coord}", .threshold = "400"},
                                        key::close_door_trapped.flag(), key::automode_trapped.flag()),
                         ValidateAllBridges{}, key::have_trapped_type.flag(), Delay{50});
    const auto door_was_closed = report_trap_once(ValidateAllBridges{}, key::close_door_trapped.flag(),
                                                  key::have_trapped_type.flag(), Delay{50});
    return IfThenElseStar(SequenceStar(find_track_near_origin(), search_way_to_origin("1")),
                          ForceFailure(FallbackStar(SubtreeCondition{"BackToOrigin"}, door_was_closed)),
                          ForceFailure(SubTree("TrapJug", tell_what_bars_way(trap_tolerance, shut_in))));
}

// --- exploring ----------------------------------------------------------------------------------

Nodes after_exploring(const char* search_tree, const Nodes& say_found)
{
    return row(SequenceStar(key::explore_found_charger.take(), SubtreeCondition{search_tree}),
               SequenceStar(no_signal_known(),
                            Fallback(SubtreeCondition{"ReadyToSearchForCharger"},
                                     ForceFailure(SubtreeCondition{"BackToOrigin"})),
                            say_found, SubtreeCondition{search_tree}));
}

}  // namespace vemra::trees
