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
                          ForceFailure(erase("navi_target_point_for_comp")), go_to_target());
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
                  DoWhile(ConditionTimerFrames{.frames_out_key = "automode_frames_consumption",
                                               .start_from = "${automode_frames_consumption}"},
                          TraceLogger{},
                          SequenceStar(default_from("origin_point", "current_coord"),
                                       restore("subregion_offset_grid"), restore("subregion_offset_x_fix"),
                                       restore("subregion_offset_y_fix"), subregion_planner(), Stop{})))),
        SubtreeCondition{"BackToMapLimit.xml"});
}
