#include "trees/dock/go_charging.h"

namespace {

Node search_dock()
{
    return SubtreeCondition{"SearchForCharger_CleanDock"};
}

// --- exploring ----------------------------------------------------------------------------------

Node not_exploring()
{
    return FallbackStar(
        key::use_mop.holds("true"),
        SequenceStar(Inverter(Named("ManualBackHomeMode", Fallback(key::task_state.is("charge"),
                                                                   key::task_state.is("search_charge")))),
                     stored_map_without_dock("${reuse_cleaning}==1", "true")));
}

Node find_charger_explore()
{
    return SubTree(
        "FindChargerExplore",
        FallbackStar(
            Repeat(-1, SequenceStar(no_signal_known(), account_motion("ExploreCharge"), exploring())),
            after_exploring("SearchForCharger_CleanDock",
                            row(SaySomething{"tq : dock founded while back to origin"}))));
}

Node explore_unless(Node when_not)
{
    return IfThenElseStar(SubTree("IfTrueNotExplore", not_exploring()), std::move(when_not),
                          find_charger_explore());
}

Node explore()
{
    return explore_unless(AlwaysFailure{});
}

// A build option lets a robot explore in any case that knows no dock at all.
Node explore_for_unknown_dock()
{
    return explore_unless(Named("EnableExploreFor7004",
                                IfThenElseStar(switched_off(), find_charger_explore(), AlwaysFailure{})));
}

// --- at a known place ---------------------------------------------------------------------------

Node walk(const char* follow_mode)
{
    return walk_to_dock({.follow_mode = follow_mode,
                         .no_way = ForceSuccess(tell_what_bars_way("0", key::cant_reach_charger.flag()))});
}

Node unless_out_of_reach()
{
    return Inverter(SequenceStar(key::cant_reach_charger.present(), SaySomething{"tolvar cant_reach_charger"},
                                 key::cant_reach_charger.erase()));
}

Nodes face_and_search(const char* charger_type)
{
    return row(key::charger_type.set_typed(charger_type), face_dock(), search_dock());
}

Node search_at_stored()
{
    return SequenceStar(account_motion("NaviChargeReuse"), walk("TargetNoUnknown"), unless_out_of_reach(),
                        face_and_search("0"));
}

Node search_at_marked()
{
    return SubTree("BackToMarkedCharger",
                   FallbackStar(Named("TryGoToMarkedCharger",
                                      SequenceStar(account_motion("NaviCharge"),
                                                   key::only_charger_in_map.copy_to(key::navi_target_point),
                                                   with_sensor("ChargerVirtualWall", walk("TargetNoUnknown")),
                                                   goal_within("150"), search_dock())),
                                ForceFailure(SubtreeCondition{"BackToOrigin"})));
}

// A mapping run that misses its dock walks at random around it.
Node search_by_walks()
{
    return SequenceStar(
        key::quick_map_dock.present(),
        PostProcess(RetryUntilSuccesful(
                        3, SequenceStar(key::random_walk_times.set(0),
                                        SubtreeCondition{"SearchForChargerRandomWalk"}, search_dock())),
                    key::quick_map_dock.erase()));
}

Node search_from_charger()
{
    return FallbackStar(SequenceStar(SaySomething{"start from charger"},
                                     key::only_charger_in_map.copy_to(key::navi_target_point), walk("Target"),
                                     unless_out_of_reach(), face_and_search("1")),
                        search_by_walks());
}

Node select_dock()
{
    return SequenceStar(
        key::cant_reach_charger.erase(), begin_run(),
        choose({{stored_charger(),
                 FallbackStar(search_at_stored(),
                              SequenceStar(key::only_charger_in_map.present(), search_at_marked()), explore(),
                              return_to_origin("1"))},
                {key::only_charger_in_map.present(),
                 FallbackStar(search_from_charger(), explore(), return_to_origin("1"))}},
               FallbackStar(search_dock(), explore_for_unknown_dock(), return_to_origin("1"))));
}

}  // namespace

// The way to a dock that the robot comes up to head first and enters backwards.
TREE(GoCharging_CleanDock)
{
    return FallbackStar(Sequence(GridmapLimitCheck{}, ForceSuccess(SubtreeCondition{"EscapeCoat"}),
                                 until_contact({.search = PostProcess(DoWhile(beside_search(), select_dock()),
                                                                      key::SFC_trapped.erase()),
                                                .keeps_search = false})),
                        ForceFailure(Stop{}));
}
