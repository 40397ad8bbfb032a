#include "trees/coverage/plan_in_subregion.h"

namespace {

Node plan_line(const char* source_point)
{
    return PlanMultipleLine{
        .is_rotate = "${gong_vertically}", .region = "${current_subregion}", .source_point = source_point};
}

}  // namespace

// The same by a line planner that looks some rows ahead.
TREE(PlanInSubregion_FollowNewGong)
{
    return plan_in_subregion({.plan_line = plan_line, .too_short_cells = "1", .keeps_line_start = true});
}
