#include "trees/dock/go_charging.h"

namespace {

// The first test and the last but one never decide: they compare fixed texts, and ask for two stages at once.
Node not_exploring()
{
    return FallbackStar(StringMatch{"SearchForCharger_lds.xml", "SearchForCharger_CleanDock.xml"},
                        key::escape_in_dock.present(),
                        SequenceStar(key::task_state.is("charge"), key::task_state.is("search_charge")),
                        SequenceStar(stored_map_without_dock("${reuse_cleaning}==1", "true")));
}

// Until the budget is spent, or a marking turn has heard the dock.
Node explore()
{
    return FallbackStar(
        Repeat(-1, SequenceStar(no_signal_known(), account_motion("ExploreCharge"), exploring())),
        after_exploring("SearchForCharger_lds", {}));
}

Node run()
{
    return Sequence(
        GridmapLimitCheck{}, ForceSuccess(SubtreeCondition{"EscapeCoat"}),
        until_contact({.search = PostProcess(
                           DoWhile(beside_search(),
                                   select_charger({.search_tree = "SearchForCharger_lds",
                                                   // The second place stays eligible after a failure.
                                                   .second_failed = key::first_potential_charger_failed,
                                                   .step_4_tolerance = "1",
                                                   .trap_tolerance = "1",
                                                   .says_what_it_does = false,
                                                   .mark_out_field = row(IfThenElseStar(
                                                       BoolMatch{"true", "true"}, key::dock_out_field.flag(),
                                                       key::dock_out_field.erase())),
                                                   .not_exploring = not_exploring(),
                                                   .explore = explore()})),
                           key::SFC_trapped.erase())}));
}

}  // namespace

// The way to the dock. Success is a robot on its contacts; any failure stops the wheels.
TREE(GoCharging_lds)
{
    return FallbackStar(run(), ForceFailure(Stop{}));
}
