#pragma once

/// Lines first, over the whole home, then the walls again: the order of work of two sister trees.

#include "trees/coverage/whole_home.h"

namespace vemra::trees {

/// A door that stands open on the map; what is left of a step that was taken out.
inline Node open_doors()
{
    return AlwaysSuccess{.new_door_status = "Open"};
}

/// All passes of the room are done. Stands behind a test that is off.
inline Node all_passes_done()
{
    return SequenceStar(SubtreeCondition{"AlwaysFailure.xml"},
                        BoolMatch{"${current_clean_times} >= ${current_area_max_times} ", "true"});
}

/// The walls count as a pass of their own.
inline Node increase_coverage(const Nodes& companions)
{
    return DoWhile(
        key::current_clean_times.kept(), companions,
        SequenceStar(key::current_clean_times.set_typed(255), SubtreeCondition{"IncreaseCoverage_mod.xml"}));
}

/// Both phases until the lines are known to be done, then the proof of the way home.
Node two_phases(const Node& lines, const Node& walls);

}  // namespace vemra::trees
