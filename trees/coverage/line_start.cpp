#include "trees/coverage/line_start.h"

namespace vemra::trees {

namespace {

// A drive over a fresh map of the part alone.
Node gong_drive()
{
    return SequenceStar(draw("None"), make_map_of_part(), search_part("TargetGong", "${navi_target_point}"),
                        SubtreeCondition{"NavigateProc"});
}

Node gong_drive_as(const char* why)
{
    return DoWhile(traced_as(why), gong_drive());
}

Node u_turn()
{
    return without_sensor(
        "SubregionBorder", traced_as("SwitchLineTurn"),
        SequenceStar(draw("ClearOnly"), DoWhile(near_points_off(), key::keep_normal_speed.flag(),
                                                guarded_arc(back_off_on_contact(), "120", "300"))));
}

Node foot_within(const char* distance_mm)
{
    return points_within(distance_mm, "${foot_point}", "${navi_target_point}");
}

Node change_to_neighbour()
{
    return choose({{SequenceStar(foot_within("100"), reckon_turn(), turn_is_half_round()), u_turn()},
                   {foot_within("500"), gong_drive_as("AfterFootNavi")}},
                  gong_drive());
}

Node get_to_line()
{
    return choose({{near_line("0"), without_sensor("DockField", gong_drive())},
                   {near_line("3"), FallbackStar(SequenceStar(find_foot_on_line(), change_to_neighbour()),
                                                 gong_drive_as("SwitchLineNavi"))}},
                  gong_drive());
}

}  // namespace

Node navigate_to_start_point(const PartPlanner& planner)
{
    if (!planner.keeps_line_start)
        return SubTree("NavigateToStartPoint",
                       SequenceStar(take_line_apart("navi_target_point"), get_to_line()));
    return SubTree("NavigateToStartPoint",
                   DoWhile(key::line_start_point.kept(),
                           SequenceStar(take_line_apart("navi_target_point"),
                                        key::navi_target_point.copy_to(key::line_start_point),
                                        SaySomething{"拷贝成功"}, get_to_line())));
}

}  // namespace vemra::trees
