#include "trees/dock/go_charging.h"
#include "trees/idioms.h"

namespace {

Node not_exploring()
{
    return Sequence(IsReuseInfoExist{}, key::reuse_cleaning.present(),
                    BoolMatch{"${reuse_cleaning}!=0", "true"});
}

constexpr BreakKey exploring_passes{key::vslam_explore_break};

// Eleven passes at most.
Node explore()
{
    const auto pass = SequenceStar(
        when(key::vslam_explore_times.above(10), exploring_passes.leave()), no_signal_known(),
        SaySomething{"tolvar explore"}, account_motion("ExploreCharge"), ForceSuccess(exploring()),
        ForceSuccess(SubtreeCondition{"SearchForCharger_vslam"}), key::vslam_explore_times.plus(1));
    return FallbackStar(SequenceStar(exploring_passes.key.set("false"), key::vslam_explore_times.set(0),
                                     exploring_passes.guard(Repeat(-1, pass))),
                        after_exploring("SearchForCharger_vslam", {}));
}

// A limit of time that is switched off.
Node give_up_in_time()
{
    return when(Sequence(BoolMatch{"false", "true"}, Inverter(budget_is_left())),
                ForceFailure(SubtreeCondition{"BackToOrigin"}));
}

Node run()
{
    return Sequence(
        GridmapLimitCheck{}, ForceSuccess(SubtreeCondition{"EscapeCoat"}),
        until_contact(
            {.search = PostProcess(
                 DoWhile(
                     beside_search(), SequenceStar(BoolMatch{"false", "true"}, count_search_time()),
                     select_charger({.search_tree = "SearchForCharger_vslam",
                                     .second_failed = key::second_potential_charger_failed,
                                     .step_4_tolerance = "0",
                                     .trap_tolerance = "0",
                                     .says_what_it_does = true,
                                     .mark_out_field = row(key::dock_out_field.erase(), give_up_in_time()),
                                     .not_exploring = not_exploring(),
                                     .explore = explore()})),
                 key::SFC_trapped.erase())}));
}

}  // namespace

// The same for a robot that finds its place by a camera. Each run has a fresh budget.
TREE(GoCharging_vslam)
{
    return FallbackStar(renew_search_time("60000"), run(), ForceFailure(Stop{}));
}
