#include "trees/conditions.h"
#include "trees/dock/go_charging.h"

namespace {

Node not_exploring()
{
    return SequenceStar(IsReuseInfoExist{}, present("reuse_cleaning"),
                        BoolMatch{"${reuse_cleaning}!=0", "true"});
}

// Eleven passes at most.
Node explore()
{
    const auto pass =
        SequenceStar(when(IsAGreaterThanBInt{"${vslam_explore_times}", "10"}, leave("vslam_explore_break")),
                     no_signal_known(), SaySomething{"tolvar explore"}, account_motion("ExploreCharge"),
                     ForceSuccess(SubtreeCondition{"Explore.xml"}),
                     ForceSuccess(SubtreeCondition{"SearchForCharger_vslam"}),
                     IntAdd{"${vslam_explore_times}", "1", "vslam_explore_times"});
    return FallbackStar(
        SequenceStar(SetBlackboard{"vslam_explore_break", "false"}, SetBlackboard{"vslam_explore_times", "0"},
                     BB_Precondition("vslam_explore_break", Repeat(-1, pass))),
        after_exploring("SearchForCharger_vslam", {}));
}

// A limit of time that is switched off.
Node give_up_in_time()
{
    return IfThenElseStar(SequenceStar(BoolMatch{"false", "true"}, Inverter(budget_is_left())),
                          ForceFailure(SubtreeCondition{"BackToOrigin"}), AlwaysSuccess{});
}

Node run()
{
    return Sequence(
        GridmapLimitCheck{}, ForceSuccess(SubtreeCondition{"EscapeCoat"}),
        until_contact(
            {.search = PostProcess(
                 DoWhile(beside_search(), SequenceStar(BoolMatch{"false", "true"}, count_search_time()),
                         select_charger({.search_tree = "SearchForCharger_vslam",
                                         .second_failed = "second_potential_charger_failed",
                                         .step_4_tolerance = "0",
                                         .trap_tolerance = "0",
                                         .says_what_it_does = true,
                                         .mark_out_field = row(erase("dock_out_field"), give_up_in_time()),
                                         .not_exploring = not_exploring(),
                                         .explore = explore()})),
                 erase("SFC_trapped"))}));
}

}  // namespace

// The same for a robot that finds its place by a camera. Each run has a fresh budget.
TREE(GoCharging_vslam)
{
    return FallbackStar(renew_search_time("60000"), run(), ForceFailure(Stop{}));
}
