#include "trees/mapping/explore.h"

namespace {

Node explore()
{
    return ForceSuccess(
        SequenceStar(account_motion("ExploreCharge"),
                     DoWhile(key::nav_explore.kept(), ForceSuccess(SubtreeCondition{"QuickExplore.xml"}))));
}

Node prove_way()
{
    return DoWhile(sensor_held_off("LaserTofPointcloud"), key::ignore_pointcloud_during_escaping.kept(),
                   SetMapDrawMode{.draw_mode = "BlockOnly", .LockState = "true"},
                   SequenceStar(key::ignore_pointcloud_during_escaping.set("true"), drive_or_follow_walls()));
}

Node way_home()
{
    return IfThenElseStar(
        search_way_to_origin("1"), FallbackStar(way_is_sound(), ForceFailure(prove_way())),
        FallbackStar(only_polygon_wall_bars(search_way_to_origin("1")), key::OnElave.flag()));
}

Node map_home()
{
    return SequenceStar(
        key::origin_point.default_from(key::current_coord),
        key::current_coord.copy_to(key::navi_target_point), SaySomething{"quick map begin"},
        when(BoolMatch{"false", "true"}, key::quick_map_dock.set("true")),
        key::quick_mapping_disable_step_process.set("true"),
        RetryUntilSuccesful(-1, SequenceStar(explore(), find_track_near_origin(), way_home())),
        key::OnElave.absent());
}

}  // namespace

// Drives through the home once to map it, and proves the way back.
TREE(QuickMapping)
{
    return Sequence(ForceSuccess(SubtreeCondition{"EscapeCoat"}),
                    DoWhile(key::OnElave.kept(), StepUtility{.new_step_status = "Open"}, AlwaysFailure{},
                            DockSignalFilter{}, TraceLogger{}, sensor_held_off("SideBrushPointcloud"),
                            SetCleanSystem{.Brush = "60", .Fan = "55", .Pump = "0", .SideBrush = "35"},
                            key::quick_mapping_disable_step_process.kept(), map_home()));
}
