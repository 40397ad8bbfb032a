#include "trees/coverage/plan_in_subregion.h"

namespace {

Node plan_line(const char* source_point)
{
    return PlanNextLine{
        .is_rotate = "${gong_vertically}", .region = "${current_subregion}", .source_point = source_point};
}

}  // namespace

// Covers a part of the floor: walls first, then lines.
TREE(PlanInSubregion_FollowGong)
{
    return plan_in_subregion({.plan_line = plan_line, .too_short_cells = "0", .keeps_line_start = false});
}
