#include "trees/coverage/shared.h"

namespace {

Node go_to_target()
{
    return ForceSuccess(FallbackStar(
        SubtreeCondition{"NavigateProc.xml"},
        SequenceStar(SetMapDrawMode{.draw_mode = "None"}, follow_walls_to_goal("TargetCollisionNoUnknown"))));
}

// The same target twice is the end: it cannot be cleaned from where it leads.
Node stop_at_same_target()
{
    return IfThenElseStar(points_within("10", "${navi_target_point}", "${navi_target_point_for_comp}"),
                          ForceFailure(key::navi_target_point_for_comp.erase()), go_to_target());
}

Node subregion_planner()
{
    return SubTree(
        "SubregionPlanner",
        ForceSuccess(Repeat(
            -1, Named("GlobalSearch",
                      SequenceStar(Named("CleanNextSubregion",
                                         SequenceStar(SetOriginalSubregion{},
                                                      SubtreeCondition{"PlanInSubregion_FollowGong.xml"})),
                                   IfThenElseStar(search_map("Normal"), stop_at_same_target(),
                                                  SequenceStar(OpenAStep{}, search_map("Normal"))))))));
}

}  // namespace

// Covers the home by lines, without a proof of the way home.
TREE(AutoMode_GongFollow)
{
    return IfThenElse(
        GridmapLimitCheck{},
        Sequence(
            SubtreeCondition{"EscapeCoat"},
            Named("AutoMode",
                  DoWhile(key::automode_frames_consumption.counts_frames(), TraceLogger{},
                          SequenceStar(key::origin_point.default_from(key::current_coord),
                                       restore(key::subregion_offset_grid, key::subregion_offset_grid_bak),
                                       restore(key::subregion_offset_x_fix, key::subregion_offset_x_fix_bak),
                                       restore(key::subregion_offset_y_fix, key::subregion_offset_y_fix_bak),
                                       subregion_planner(), Stop{})))),
        SubtreeCondition{"BackToMapLimit.xml"});
}
