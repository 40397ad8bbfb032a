#include "trees/dock/go_charging.h"

namespace {

Node search()
{
    return Sequence(
        budget_is_left(),
        SequenceStar(set_flag("dock_out_field"),
                     ForceSuccess(Frameout(50, Sequence(SubtreeCondition{"Escape"}, GoBackwards{}))),
                     FallbackStar(ForceFailure(set_flag("dock_out_field")),
                                  SubtreeCondition{"SearchForChargerWithoutMap"})));
}

}  // namespace

// The way to the dock by odometry alone, with a quarter of the budget.
TREE(GoChargingWithoutMap)
{
    return FallbackStar(
        renew_search_time("15000"),
        Sequence(SaySomething{"tq: GoChargingWithout"}, ForceSuccess(SubtreeCondition{"EscapeCoat"}),
                 until_contact(
                     {.search = DoWhile(
                          DockSignalFilter{}, TraceLogger{}, SetBlackboard{"got_charger_force_halt", "true"},
                          SetCleanSystem{.Brush = "60", .Fan = "55", .Pump = "0", .SideBrush = "35"},
                          TemporarilyDisableSensor{.lock_status = "false", .sensor = "ChargerVirtualWall"},
                          count_search_time(), search())})),
        ForceFailure(Stop{}));
}
