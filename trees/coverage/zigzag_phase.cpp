#include "trees/coverage/line_start.h"
#include "trees/coverage/plan_in_subregion.h"
#include "trees/idioms.h"

namespace vemra::trees {

namespace {

// --- the next line ------------------------------------------------------------------------------

Node path_has_trial_bridge()
{
    return PathSegHasTrialBridge{"${navigation_path_segments}"};
}

Node get_next_line(const PartPlanner& planner)
{
    return FallbackStar(
        planner.plan_line("${current_coord}"),
        SequenceStar(key::sub_subregion_border_closed.set("true"), search_part("Normal", "default", "true"),
                     FallbackStar(path_has_trial_bridge(), planner.plan_line("${navi_target_point}"))),
        ForceFailure(SequenceStar(key::sub_subregion_border_closed.set("false"),
                                  key::started_first_line.set("false"))));
}

// --- what is done with it -----------------------------------------------------------------------

Node cross_trial_bridge()
{
    return SequenceStar(
        path_has_trial_bridge(),
        without_sensor("DockField", SequenceStar(draw("None"), make_map_of_part(),
                                                 search_part("TargetCollision", "${navi_target_point}"),
                                                 SubtreeCondition{"NavigateProc"})));
}

Node note_place_on_line()
{
    return key::current_coord.copy_to(key::last_line_coord);
}

// A line without length: its middle is visited, and it counts as done.
Node visit_middle(const PartPlanner& planner)
{
    return SequenceStar(
        line_shorter_than(planner.too_short_cells),
        without_sensor(
            "DockField", note_place_on_line(),
            SequenceStar(make_map_of_part(), draw("None"),
                         GetMidPointOfLine{"${next_line_to_clean}", "navi_target_point"},
                         search_part("TargetGong", "${navi_target_point}"),
                         IfThenElseStar(near_line("3"),
                                        DoWhile(traced_as("LineTooShort"), SubtreeCondition{"NavigateProc"}),
                                        SubtreeCondition{"NavigateProc"}),
                         draw("ClearOnly"), Stop{}, Delay{3})));
}

Node clean_line(const PartPlanner& planner)
{
    return SequenceStar(navigate_to_start_point(planner), key::started_first_line.set("true"),
                        DoWhile(traced_as("CleanTheLine"), note_place_on_line(),
                                SequenceStar(draw("ClearOnly"), SetFixOrientation{"${finish_point}"},
                                             SubtreeCondition{"FixOrientation"},
                                             key::current_coord.copy_to(key::current_line_finish_point))));
}

// --- after a bump -------------------------------------------------------------------------------

Node touched(const char* side)
{
    return BumpdirMatch{"${bump_dir}", side};
}

Node trace_contact()
{
    return SequenceStar(contact_needs_tracing(), begin_chain(), gong_follow_wall());
}

Node follow_wall_to_line()
{
    return DoWhile(traced_as("NaviFollowWall"), SequenceStar(follow_walls_to_goal("TargetCollision")));
}

// A thing that need not be traced is passed, and a fresh line taken.
Node pass_obstacle(const PartPlanner& planner)
{
    return SequenceStar(
        optionally(planner.plan_line("${current_coord}"), take_line_apart("navi_target_point")),
        draw("Default"),
        Named("IfenElseStar",
              IfThenElseStar(goal_within("150"),
                             SequenceStar(key::current_pose.copy_to(key::original_bump_point),
                                          points_within("50", "${current_pose}", "${original_bump_point}"),
                                          follow_wall_to_line()),
                             follow_wall_to_line())));
}

Node line_cycle(const PartPlanner& planner)
{
    return SequenceStar(
        when(key::followwall_motion_type.present(), set_bool("followwall_motion_type", "false")),
        account_motion("Gong"), set_bool("gong_motion_type", "true"),
        key::sub_subregion_border_closed.set("true"), get_next_line(planner),
        key::sub_subregion_border_closed.set("false"),
        ForceSuccess(FallbackStar(cross_trial_bridge(), visit_middle(planner), clean_line(planner),
                                  // The dock's field must not be traced.
                                  touched("left_dock"), touched("middle_dock"), touched("right_dock"),
                                  trace_contact(), pass_obstacle(planner))));
}

Node gong(const PartPlanner& planner)
{
    return SubTree(
        "Gong",
        FallbackStar(SequenceStar(erase(key::current_line_finish_point, key::need_search_block),
                                  Repeat(-1, line_cycle(planner))),
                     ForceFailure(SequenceStar(key::need_search_block.flag(), key::bump_dir.set("None"),
                                               set_bool("gong_motion_type", "false")))));
}

}  // namespace

Node zigzag_phase(const PartPlanner& planner)
{
    return SequenceStar(key::current_coord.copy_to(key::entrance), account_motion("Gong"),
                        key::cross_trial_bridge_success.set("false"), key::skip_cutting_chain.flag(),
                        BB_Precondition(key::cross_bridge_near_chain_end,
                                        BB_Precondition(key::cross_trial_bridge_success, gong(planner))));
}

}  // namespace vemra::trees
