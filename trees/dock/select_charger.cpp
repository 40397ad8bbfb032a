#include "trees/dock/go_charging.h"
#include "trees/idioms.h"

namespace vemra::trees {

namespace {

Nodes say(const HistorySearch& search, const char* what)
{
    return only_if(search.says_what_it_does, SaySomething{what});
}

// --- where a dock was heard before --------------------------------------------------------------

Node charger_in_use()
{
    return BlackboardContains{"${potential_charger}"};
}

// The walk ends as soon as the dock is heard within its field.
Node walk_until_heard()
{
    const auto walk = SubTree(
        "NavigateNoneStop",
        SequenceStar(
            snap_to_track("${navi_target_point}"),
            ForceSuccess(Repeat(-1, SequenceStar(search_known_floor(), SetMapDrawMode{.draw_mode = "None"},
                                                 drive_over_known_floor(), Inverter(goal_within("150"))))),
            goal_within("150")));
    return SubTree("NavigateWithDockFieldCapture",
                   Fallback(Sequence(InDockField{}, SubtreeCondition{"ReadyToSearchForCharger"}), walk));
}

Node explore_dock_field(const HistorySearch& search)
{
    return SubTree(
        "ExploreDockFieldArea",
        SequenceStar(ForceSuccess(unless(charger_in_use(), search_map("Charger", "default", "trash"),
                                         FindNearestInTrajectory{.out_point_grid = "${potential_charger}",
                                                                 .search_for = "slamclear",
                                                                 .start_from = "${trash}"})),
                     charger_in_use(), BlackboardCopy{"${potential_charger}", "navi_target_point"},
                     key::has_charger_in_map.flag(), walk_until_heard(),
                     SubtreeCondition{search.search_tree}));
}

struct Place
{
    const char* name;
    Key key;
    Key failed;
    Key mark_failed;
    const char* saying;
};

Node search_at(const Place& place, const HistorySearch& search)
{
    return SubTree(
        place.name,
        SequenceStar(
            place.failed.absent(), key::potential_charger.set(place.key), say(search, place.saying),
            account_motion("SearchCharge"),
            IfThenElseStar(
                explore_dock_field(search),
                SequenceStar(place.key.copy_to(key::only_charger_in_map), key::potential_charger.erase()),
                ForceFailure(SequenceStar(key::potential_charger.erase(), place.mark_failed.flag())))));
}

Nodes search_history(const HistorySearch& search)
{
    return row(
        search_at(
            {"FindHistoryChargerFirst", key::first_potential_charger, key::first_potential_charger_failed,
             key::first_potential_charger_failed, "tolvar history first"},
            search),
        search_at({"FindHistoryChargerSecond", key::second_potential_charger,
                   key::second_potential_charger_failed, search.second_failed, "tolvar history second"},
                  search));
}

// --- the chains ---------------------------------------------------------------------------------

Node explore(const HistorySearch& search)
{
    return IfThenElseStar(SubTree("IfTrueNotExplore", search.not_exploring), AlwaysFailure{},
                          SubTree("FindChargerExplore", search.explore));
}

Nodes explore_and_return(const HistorySearch& search)
{
    return row(explore(search), return_to_origin(search.trap_tolerance));
}

Node search_at_marked(const HistorySearch& search)
{
    return SequenceStar(key::only_charger_in_map.present(), say(search, "tolvar only charger"),
                        account_motion("NaviCharge"),
                        SubtreeCondition{"BackToMarkedCharger_WithoutSearch.xml"});
}

Node search_at_stored(const HistorySearch& search)
{
    return SequenceStar(say(search, "tolvar reuse"), account_motion("NaviChargeReuse"),
                        walk_to_dock({.no_way = ForceSuccess(tell_what_bars_way(search.step_4_tolerance))}),
                        SubtreeCondition{search.search_tree});
}

Node search_on_the_spot(const HistorySearch& search)
{
    return FallbackStar(search_history(search), ForceFailure(key::dock_out_field.flag()),
                        SubtreeCondition{search.search_tree}, explore_and_return(search));
}

}  // namespace

Node select_charger(const HistorySearch& search)
{
    return SequenceStar(
        begin_run(), search.mark_out_field,
        choose({{stored_charger(), FallbackStar(search_at_stored(search), search_at_marked(search),
                                                search_history(search), explore_and_return(search))},
                {key::only_charger_in_map.present(),
                 FallbackStar(SequenceStar(say(search, "tolvar only charger"), account_motion("NaviCharge"),
                                           SubtreeCondition{"BackToMarkedCharger_WithoutSearch.xml"}),
                              search_history(search), explore_and_return(search))}},
               search_on_the_spot(search)));
}

}  // namespace vemra::trees
