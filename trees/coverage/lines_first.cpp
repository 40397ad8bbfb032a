#include "trees/coverage/lines_first.h"

#include "trees/idioms.h"

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
                         Sequence(key::follow_wall_dir.holds("true"),
                                  FallbackStar(ended_by("SideBrushPointcloud"), ended_by("right"),
                                               ended_by("LaserTofPointcloudRight"))),
                         Sequence(key::follow_wall_dir.holds("false"),
                                  FallbackStar(ended_by("left"), ended_by("LaserTofPointcloudLeft"))),
                         ended_at_dock_or_edge())));
}

Node change_line(const LinesFirst& planner)
{
    return IfThenElseStar(
        Bumped{"${bump_dir_save}"},
        IfThenElseStar(IfThenElseStar(key::Enable_TOF.present(), bump_check_tof(), bump_check()),
                       SubtreeCondition{"SwitchLineFollowWallCoat"}, SubtreeCondition{"SwitchLineTurn"}),
        planner.beside_line);
}

Node last_line_is_near()
{
    return FallbackStar(key::current_line_finish_point.absent(),
                        Sequence(start_within("1000", "${current_pose}"),
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
                 IfThenElseStar(std::move(move), key::bump_dir_save.set("None"),
                                ForceFailure(key::switch_line_bump_dir.copy_to(key::bump_dir_save))));
}

// --- along the line -----------------------------------------------------------------------------

Node clean_the_line()
{
    return SubTree(
        "CleanTheLine",
        DoWhile(
            traced_as("CleanTheLine"),
            SequenceStar(
                draw("ClearOnly"), key::current_coord.copy_to(key::start_coord_of_the_line),
                ExtendFinishPoint{"${gong_vertically}"}, key::next_line_to_clean.copy_to(key::current_line),
                key::finish_point.copy_to(key::current_finish_point), SetFixOrientation{"${finish_point}"},
                ForceSuccess(SubtreeCondition{"FixOrientation.xml"}),
                key::current_coord.copy_to(key::current_line_finish_point),
                when(Sequence(NotTrapped{}, bumped()), key::bump_dir.copy_to(key::bump_dir_save)),
                SubtreeCondition{"IMUCalib"})));
}

// A line whose start was not reached is left alone; the next search may find it again.
Node clean_next_line(const LinesFirst& planner)
{
    return ForceSuccess(SubTree(
        "CleanNextLine",
        Named("FromStartToFinishPoint", SequenceStar(key::bump_dir_save.copy_to(key::last_bump_dir_save),
                                                     move_to_line(planner), clean_the_line()))));
}

Node clean_a_line(const LinesFirst& planner)
{
    return with_sensor(
        "SubregionBorder", key::region_of_interest.kept(),
        Named("CleanALine", SequenceStar(key::current_subregion.copy_to(key::region_of_interest),
                                         ForceSuccess(SubtreeCondition{"Back2cm"}), search_next_line(planner),
                                         clean_next_line(planner))));
}

// Within the part there is nothing left to do, which ends the planner.
Node back_into_part()
{
    const auto drive = DoWhile(draw_locked("None"), SubtreeCondition{"tidemark_pro/NavigateProc.xml"});
    const auto follow = DoWhile(draw_locked("BlockOnly"), SequenceStar(follow_walls_to_goal("Target")));
    return SequenceStar(
        key::bump_dir_save.set("None"),
        Inverter(IsPointInRectangle{.point = "${current_coord}", .rectangle = "${current_subregion}"}),
        key::return_to_region_abort.set("false"),
        IfThenElseStar(
            BB_Precondition(key::return_to_region_abort,
                            RetryUntilSuccesful(
                                3, IfThenElseStar(search_part("Region"), FallbackStar(drive, follow),
                                                  ForceFailure(key::return_to_region_abort.set("true"))))),
            key::return_to_region_abort.erase(), ForceFailure(key::return_to_region_abort.erase())));
}

}  // namespace

Node navigate_and_follow_wall(const char* search_mode, const Node& otherwise)
{
    return SubTree("NavigateAndFollowWall",
                   Fallback(Sequence(near_line("0"), IsPointInSegment{.line = "${next_line_to_clean}",
                                                                      .point = "${current_coord}"}),
                            FallbackStar(SequenceStar(key::bump_dir_save.set("None"), make_map_of_part(),
                                                      key::start_point.copy_to(key::navi_target_point),
                                                      search_part(search_mode, "${navi_target_point}"),
                                                      SubtreeCondition{"NavigateProc.xml"},
                                                      Inverter(Sequence(NotTrapped{}, bumped()))),
                                         otherwise)));
}

Node lines_first(const LinesFirst& planner)
{
    const auto lines_level = [] { return key::gong_vertically.set("false"); };
    return DoWhile(
        key::zone_cleaning_frames_consumption.counts_frames(),
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
