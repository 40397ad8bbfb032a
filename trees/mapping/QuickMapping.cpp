#include "trees/mapping/explore.h"

namespace {

Node explore()
{
    return ForceSuccess(SequenceStar(
        account_motion("ExploreCharge"),
        DoWhile(StackBlackboard{"nav_explore"}, ForceSuccess(SubtreeCondition{"QuickExplore.xml"}))));
}

Node prove_way()
{
    return DoWhile(
        TemporarilyDisableSensor{.lock_status = "true", .sensor = "LaserTofPointcloud"},
        StackBlackboard{"ignore_pointcloud_during_escaping"},
        SetMapDrawMode{.draw_mode = "BlockOnly", .LockState = "true"},
        SequenceStar(SetBlackboard{"ignore_pointcloud_during_escaping", "true"}, drive_or_follow_walls()));
}

Node way_home()
{
    return IfThenElseStar(
        search_way_to_origin("1"), FallbackStar(way_is_sound(), ForceFailure(prove_way())),
        FallbackStar(only_polygon_wall_bars(search_way_to_origin("1")), set_flag("OnElave")));
}

Node map_home()
{
    return SequenceStar(
        default_from("origin_point", "current_coord"), BlackboardCopy{"current_coord", "navi_target_point"},
        SaySomething{"quick map begin"},
        IfThenElseStar(BoolMatch{"false", "true"}, SetBlackboard{"quick_map_dock", "true"}, AlwaysSuccess{}),
        SetBlackboard{"quick_mapping_disable_step_process", "true"},
        RetryUntilSuccesful(-1, SequenceStar(explore(), find_track_near_origin(), way_home())),
        absent("OnElave"));
}

}  // namespace

// Drives through the home once to map it, and proves the way back.
TREE(QuickMapping)
{
    return Sequence(ForceSuccess(SubtreeCondition{"EscapeCoat"}),
                    DoWhile(StackBlackboard{"OnElave"}, StepUtility{.new_step_status = "Open"},
                            AlwaysFailure{}, DockSignalFilter{}, TraceLogger{},
                            TemporarilyDisableSensor{.lock_status = "true", .sensor = "SideBrushPointcloud"},
                            SetCleanSystem{.Brush = "60", .Fan = "55", .Pump = "0", .SideBrush = "35"},
                            StackBlackboard{"quick_mapping_disable_step_process"}, map_home()));
}
