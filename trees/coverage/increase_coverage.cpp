#include "trees/coverage/increase_coverage.h"

namespace vemra::trees {

namespace {

Node count_frames()
{
    return key::follow_wall_frames_consumption.counts_frames();
}

// Within a room there is no budget.
Node within_budget(const char* spent)
{
    return FallbackStar(key::skip_followwall_timeout_check.present(),
                        key::follow_wall_frame_out.above(key::follow_wall_frames_consumption.value()),
                        ForceFailure(SaySomething{spent}));
}

Node drive_to_goal()
{
    return DoWhile(
        key::follow_wall_dir.kept(), sensor_held_on("DockField"), sensor_held_on("ChargerVirtualWall"),
        SequenceStar(SetMapDrawMode{.draw_mode = "Default"}, SubtreeCondition{"NavigateProc.xml"}));
}

Node back_off()
{
    return SequenceStar(SetMapDrawMode{.draw_mode = "Default"}, SubtreeCondition{"Back2cm"});
}

Node get_there()
{
    return FallbackStar(goal_within("100"), drive_to_goal(), ForceFailure(back_off()), goal_within("100"),
                        ForceFailure(SequenceStar(follow_walls_to_goal("TargetCollisionNoUnknown"))));
}

Node at_wall()
{
    return Sequence(NotTrapped{}, bumped());
}

Node drive_straight_to_block(const WallPass& pass)
{
    return DoWhile(
        pass.mark_touched, sensor_on("FollowWallVirtualWallMap"), sensor_on("DockField"),
        sensor_on("ChargerVirtualWall"),
        SequenceStar(SetMapDrawMode{.draw_mode = "Default"}, SubtreeCondition{"NaviOnePointProc.xml"}));
}

// A drive that meets nothing may have come to the border of the map, which is followed like a wall.
Node touch_wall(const WallPass& pass)
{
    return FallbackStar(
        at_wall(),
        SequenceStar(
            pass.extend,
            FallbackStar(Inverter(drive_straight_to_block(pass)), ForceFailure(SubtreeCondition{"Back2cm"}),
                         SequenceStar(NearGridmapLimit{}, SensorTriggerBump{"MapBorder"})),
            at_wall()));
}

Node outer_stage(const WallPass& pass)
{
    return RetryUntilSuccesful(
        -1, when(pass.find_outer,
                 DoWhile(count_frames(),
                         IfThenElse(within_budget("总时间超时（外沿边）"),
                                    SequenceStar(key::bump_dir.set("None"), get_there(), touch_wall(pass),
                                                 ForceFailure(follow_wall_with_mark_map(pass.wall_piece))),
                                    AlwaysSuccess{}))));
}

// --- around the blocks --------------------------------------------------------------------------

// Wherever a drive there is stopped, the robot steps back and takes what stopped it.
Node reach_block(const WallPass& pass)
{
    return ForceSuccess(
        FallbackStar(SequenceStar(drive_to_goal(), pass.extend, drive_straight_to_block(pass)),
                     SubtreeCondition{"Back2cm"}));
}

// A wall that was followed already is passed.
Node go_round_block(const WallPass& pass)
{
    return IfThenElseStar(InFollowWallMarkMap{"${current_coord}"},
                          SequenceStar(follow_walls_to_goal("TargetCollisionNoUnknown")),
                          follow_wall_with_mark_map(pass.wall_piece));
}

Node inner_stage(const WallPass& pass)
{
    const auto one_block =
        DoWhile(count_frames(),
                Sequence(within_budget("总时间超时（内沿边）"),
                         SequenceStar(reach_block(pass), NotTrapped{}, bumped(), go_round_block(pass))));
    return ForceSuccess(FallbackStar(
        SequenceStar(key::skip_followwall_timeout_check.absent(), key::clean_time_for_app.above(2400),
                     SaySomething{"清扫时间大于40分钟，不做内沿边"}),
        Repeat(-1, IfThenElseStar(pass.find_inner, one_block, AlwaysFailure{}))));
}

}  // namespace

Node say_side_of_wall(const char* where)
{
    const std::string text(where);
    return IfThenElseStar(key::follow_wall_dir.holds("true"),
                          SaySomething{text + " follow_wall_dir == true, 右沿边"},
                          SaySomething{text + " follow_wall_dir == false, 左沿边"});
}

Node follow_wall_with_mark_map(const Node& piece)
{
    return SubTree(
        "FollowWallWithMarkMap",
        DoWhile(FollowWallTraceLogger{},
                FallbackStar(
                    Inverter(FallbackStar(key::follow_wall_dir.present(), key::follow_wall_dir.set("true"))),
                    ForceFailure(say_side_of_wall("2")), piece,
                    SequenceStar(SetMapDrawMode{.draw_mode = "Default"}, SubtreeCondition{"Back2cm.xml"}))));
}

Node wall_pass(const WallPass& pass)
{
    return IfThenElse(
        GridmapLimitCheck{},
        Sequence(
            ForceSuccess(SubtreeCondition{"EscapeCoat"}),
            DoWhile(TraceLogger{}, ForceSuccess(Sequence(
                                       key::block_map_time.counts_seconds(),
                                       SequenceStar(key::origin_point.default_from(key::current_coord),
                                                    CalcFollowWallFrameOut{
                                                        .auto_mode_frames = "${automode_frames_consumption}",
                                                        .out_key = "follow_wall_frame_out"},
                                                    outer_stage(pass), inner_stage(pass)))))),
        SubtreeCondition{"BackToMapLimit.xml"});
}

}  // namespace vemra::trees
