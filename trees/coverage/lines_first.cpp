#include "trees/coverage/lines_first.h"

#include "trees/conditions.h"

namespace vemra::trees {

namespace {

Node search_next_line(const LinesFirst& planner)
{
    return SubTree("SearchNextLine", Named("SearchForUncleanedArea",
                                           FallbackStar(planner.plan_from_here, planner.plan_from_floor)));
}

// --- to the start of the line -------------------------------------------------------------------

Node ended_by(const char* bump)
{
    return BumpdirMatch{"${bump_dir_save}", bump};
}

Node foot_is_far()
{
    return SequenceStar(Inverter(ended_by("virtual")), find_foot_on_line(),
                        Inverter(points_within("150", "${foot_point}", "${start_point}")));
}

Nodes ended_at_dock_or_edge()
{
    return row(ended_by("left_dock"), ended_by("right_dock"), ended_by("left_mag"), ended_by("right_mag"),
               ended_by("left_cliff"), ended_by("right_cliff"), ended_by("middle_cliff"));
}

Node bump_check()
{
    return SubTree("BumpCheck", FallbackStar(line_shorter_than("3"), foot_is_far(), ended_by("left"),
                                             ended_by("right"), ended_at_dock_or_edge()));
}

// With the time-of-flight sensor the side counts on which the wall is to be kept.
Node bump_check_tof()
{
    return SubTree(
        "BumpCheck_TOF",
        Sequence(
            CalcSwitchLineFollowWallDirection{.is_rotate = "${gong_vertically}", .middle_of_line = "false"},
            FallbackStar(line_shorter_than("3"), foot_is_far(),
                         SequenceStar(BoolMatch{"${follow_wall_dir}", "true"},
                                      FallbackStar(ended_by("SideBrushPointcloud"), ended_by("right"),
                                                   ended_by("LaserTofPointcloudRight"))),
                         SequenceStar(BoolMatch{"${follow_wall_dir}", "false"},
                                      FallbackStar(ended_by("left"), ended_by("LaserTofPointcloudLeft"))),
                         ended_at_dock_or_edge())));
}

Node change_line(const LinesFirst& planner)
{
    return IfThenElseStar(
        Bumped{"${bump_dir_save}"},
        IfThenElseStar(IfThenElseStar(present("Enable_TOF"), bump_check_tof(), bump_check()),
                       SubtreeCondition{"SwitchLineFollowWallCoat"}, SubtreeCondition{"SwitchLineTurn"}),
        planner.beside_line);
}

Node last_line_is_near()
{
    return FallbackStar(absent("current_line_finish_point"),
                        SequenceStar(start_within("1000", "${current_pose}"),
                                     start_within("1000", "${current_line_finish_point}")));
}

Node navigate_to_start(const LinesFirst& planner)
{
    return SubTree("NavigateToStartPoint",
                   SequenceStar(take_line_apart("start_point"),
                                choose({{near_line("0"), planner.on_line},
                                        {near_line("3"), change_line(planner)},
                                        {last_line_is_near(), DoWhile(traced_as("LongNavi"), planner.drive)}},
                                       planner.drive)));
}

Node move_to_line(const LinesFirst& planner)
{
    Node move = navigate_to_start(planner);
    if (!planner.watch_to_start.empty())
        move = DoWhile(planner.watch_to_start, std::move(move));
    return Named("NavigateToStartPoint",
                 IfThenElseStar(std::move(move), SetBlackboard{"bump_dir_save", "None"},
                                ForceFailure(BlackboardCopy{"switch_line_bump_dir", "bump_dir_save"})));
}

// --- along the line -----------------------------------------------------------------------------

Node clean_the_line()
{
    return SubTree(
        "CleanTheLine",
        DoWhile(
            traced_as("CleanTheLine"),
            SequenceStar(
                draw("ClearOnly"), BlackboardCopy{"current_coord", "start_coord_of_the_line"},
                ExtendFinishPoint{"${gong_vertically}"}, BlackboardCopy{"next_line_to_clean", "current_line"},
                BlackboardCopy{"finish_point", "current_finish_point"}, SetFixOrientation{"${finish_point}"},
                ForceSuccess(SubtreeCondition{"FixOrientation.xml"}),
                BlackboardCopy{"current_coord", "current_line_finish_point"},
                when(SequenceStar(NotTrapped{}, bumped()), BlackboardCopy{"bump_dir", "bump_dir_save"}),
                SubtreeCondition{"IMUCalib"})));
}

// A line whose start was not reached is left alone; the next search may find it again.
Node clean_next_line(const LinesFirst& planner)
{
    return ForceSuccess(SubTree(
        "CleanNextLine",
        Named("FromStartToFinishPoint", SequenceStar(BlackboardCopy{"bump_dir_save", "last_bump_dir_save"},
                                                     move_to_line(planner), clean_the_line()))));
}

Node clean_a_line(const LinesFirst& planner)
{
    return with_sensor(
        "SubregionBorder", StackBlackboard{"region_of_interest"},
        Named("CleanALine", SequenceStar(BlackboardCopy{"current_subregion", "region_of_interest"},
                                         ForceSuccess(SubtreeCondition{"Back2cm"}), search_next_line(planner),
                                         clean_next_line(planner))));
}

// Within the part there is nothing left to do, which ends the planner.
Node back_into_part()
{
    const auto drive = DoWhile(draw_locked("None"), SubtreeCondition{"tidemark_pro/NavigateProc.xml"});
    const auto follow = DoWhile(draw_locked("BlockOnly"), SequenceStar(follow_walls_to_goal("Target")));
    return SequenceStar(
        SetBlackboard{"bump_dir_save", "None"},
        Inverter(IsPointInRectangle{.point = "${current_coord}", .rectangle = "${current_subregion}"}),
        SetBlackboard{"return_to_region_abort", "false"},
        IfThenElseStar(
            BB_Precondition(
                "return_to_region_abort",
                RetryUntilSuccesful(
                    3, IfThenElseStar(search_part("Region"), FallbackStar(drive, follow),
                                      ForceFailure(SetBlackboard{"return_to_region_abort", "true"})))),
            erase("return_to_region_abort"), ForceFailure(erase("return_to_region_abort"))));
}

}  // namespace

Node navigate_and_follow_wall(const char* search_mode, const Node& otherwise)
{
    return SubTree(
        "NavigateAndFollowWall",
        Fallback(Sequence(near_line("0"),
                          IsPointInSegment{.line = "${next_line_to_clean}", .point = "${current_coord}"}),
                 FallbackStar(SequenceStar(SetBlackboard{"bump_dir_save", "None"}, make_map_of_part(),
                                           BlackboardCopy{"start_point", "navi_target_point"},
                                           search_part(search_mode, "${navi_target_point}"),
                                           SubtreeCondition{"NavigateProc.xml"},
                                           Inverter(SequenceStar(NotTrapped{}, bumped()))),
                              otherwise)));
}

Node lines_first(const LinesFirst& planner)
{
    const auto lines_level = [] { return SetBlackboard{"gong_vertically", "false"}; };
    return DoWhile(
        ConditionTimerFrames{.frames_out_key = "zone_cleaning_frames_consumption",
                             .start_from = "${zone_cleaning_frames_consumption}"},
        SequenceStar(
            account_motion("Gong"),
            IfThenElseStar(SequenceStar(SubtreeCondition{"AlwaysFailure.xml"},
                                        BoolMatch{"${current_clean_times} == 1", "true"}),
                           lines_level(), lines_level()),
            IfThenElse(GridmapLimitCheck{},
                       ForceSuccess(Repeat(-1, IfThenElseStar(RefineCurrentSubregion{}, clean_a_line(planner),
                                                              back_into_part()))),
                       SubtreeCondition{"BackToMapLimit.xml"})));
}

}  // namespace vemra::trees
