#pragma once

/// Where the robot looks for its dock, and in what order.

#include "trees/dock/walks.h"

namespace vemra::trees {

/// Runs `search` until there is contact. A contact that holds ends the run; where `keeps_search` is set, one
/// that breaks lets the search go on where it stood.
struct ContactSwitch
{
    Node search;
    bool keeps_search = true;
};
Node until_contact(const ContactSwitch& run);

/// Beside each search: the dock's signal is filtered, contact ends what runs, and the dock's own virtual wall
/// does not count.
Nodes beside_search();

/// What the runs with a map begin with: where the run began, and whether a wall of the user shuts the robot
/// in.
Nodes begin_run();

/// Searches of the dock over what is known and what is not, in the forms for the two live docks.
struct HistorySearch
{
    const char* search_tree;
    Key second_failed;  ///< what a failure at the second place marks
    const char* step_4_tolerance;
    const char* trap_tolerance;
    bool says_what_it_does;

    Nodes mark_out_field;  ///< at the start of the run
    Node not_exploring;    ///< there is no point in exploring
    Node explore;          ///< the way to a dock that was never seen
};

/// The choice between the stored dock, the trusted one, those of history, and none.
Node select_charger(const HistorySearch& search);

/// The end of a run: the robot stands where it began, and what bars it is told. Always fails.
Node return_to_origin(const char* trap_tolerance);

// --- pieces of the searches ---------------------------------------------------------------------

inline Node stored_charger()
{
    return SequenceStar(key::kicked_dock.absent(), GetChargerFromReuseInfo{"navi_target_point"});
}

/// The home's map has rooms and yet no dock.
inline Nodes stored_map_without_dock(const char* test, const char* answer)
{
    return row(IsReuseInfoExist{}, key::reuse_cleaning.present(), BoolMatch{test, answer},
               Inverter(GetChargerFromReuseInfo{"trash"}));
}

inline Node budget_is_left()
{
    return key::search_charger_timeout.above(key::search_charger_time.value());
}

inline Node count_search_time()
{
    return key::search_charger_time.counts_frames();
}

inline Node renew_search_time(const char* timeout)
{
    return ForceFailure(
        SequenceStar(key::search_charger_time.set(0), key::search_charger_timeout.set(timeout)));
}

inline Node exploring()
{
    return DoWhile(key::nav_explore.kept(), count_search_time(),
                   Sequence(budget_is_left(), SubtreeCondition{"Explore.xml"}));
}

/// What exploring has found, and what is heard on the way back.
Nodes after_exploring(const char* search_tree, const Nodes& say_found);

}  // namespace vemra::trees
