#include "trees/dock/go_charging.h"

namespace {

Node search()
{
    return Sequence(
        budget_is_left(),
        SequenceStar(key::dock_out_field.flag(), ForceSuccess(Frameout(50, guarded(GoBackwards{}))),
                     FallbackStar(ForceFailure(key::dock_out_field.flag()),
                                  SubtreeCondition{"SearchForChargerWithoutMap"})));
}

}  // namespace

// The way to the dock by odometry alone, with a quarter of the budget.
TREE(GoChargingWithoutMap)
{
    return FallbackStar(
        renew_search_time("15000"),
        Sequence(
            SaySomething{"tq: GoChargingWithout"}, ForceSuccess(SubtreeCondition{"EscapeCoat"}),
            until_contact(
                {.search = DoWhile(DockSignalFilter{}, TraceLogger{}, key::got_charger_force_halt.set("true"),
                                   SetCleanSystem{.Brush = "60", .Fan = "55", .Pump = "0", .SideBrush = "35"},
                                   sensor_off("ChargerVirtualWall"), count_search_time(), search())})),
        ForceFailure(Stop{}));
}
