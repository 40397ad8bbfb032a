#include "trees/coverage/increase_coverage.h"

namespace vemra::trees {

namespace {

Node count_frames()
{
    return ConditionTimerFrames{.frames_out_key = "follow_wall_frames_consumption",
                                .start_from = "${follow_wall_frames_consumption}"};
}

// Within a room there is no budget.
Node within_budget(const char* spent)
{
    return FallbackStar(present("skip_followwall_timeout_check"),
                        IsAGreaterThanBInt{"${follow_wall_frame_out}", "${follow_wall_frames_consumption}"},
                        ForceFailure(SaySomething{spent}));
}

Node drive_to_goal()
{
    return DoWhile(
        StackBlackboard{"follow_wall_dir"}, sense("DockField", "true"), sense("ChargerVirtualWall", "true"),
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
    return SequenceStar(NotTrapped{}, bumped());
}

Node drive_straight_to_block(const WallPass& pass)
{
    return DoWhile(
        pass.mark_touched, sense("FollowWallVirtualWallMap", "false"), sense("DockField", "false"),
        sense("ChargerVirtualWall", "false"),
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
        -1,
        IfThenElseStar(
            pass.find_outer,
            DoWhile(count_frames(),
                    IfThenElse(within_budget("总时间超时（外沿边）"),
                               SequenceStar(SetBlackboard{"bump_dir", "None"}, get_there(), touch_wall(pass),
                                            ForceFailure(follow_wall_with_mark_map(pass.wall_piece))),
                               AlwaysSuccess{})),
            AlwaysSuccess{}));
}

// --- around the blocks --------------------------------------------------------------------------

Node reach_block(const WallPass& pass)
{
    return optionally(FallbackStar(drive_to_goal(), AlwaysSuccess{}), pass.extend,
                      FallbackStar(drive_straight_to_block(pass), SubtreeCondition{"Back2cm"}));
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
    const auto one_block = DoWhile(
        count_frames(), Sequence(within_budget("总时间超时（内沿边）"), ActionDecorator(reach_block(pass)),
                                 NotTrapped{}, bumped(), go_round_block(pass)));
    return ForceSuccess(
        FallbackStar(SequenceStar(absent("skip_followwall_timeout_check"),
                                  IsAGreaterThanBInt{"${clean_time_for_app}", "2400"},
                                  SaySomething{"清扫时间大于40分钟，不做内沿边"}),
                     Repeat(-1, IfThenElseStar(pass.find_inner, one_block, AlwaysFailure{}))));
}

}  // namespace

Node say_side_of_wall(const char* where)
{
    const std::string text(where);
    return IfThenElseStar(BoolMatch{"${follow_wall_dir}", "true"},
                          SaySomething{text + " follow_wall_dir == true, 右沿边"},
                          SaySomething{text + " follow_wall_dir == false, 左沿边"});
}

Node follow_wall_with_mark_map(const Node& piece)
{
    return SubTree(
        "FollowWallWithMarkMap",
        DoWhile(
            FollowWallTraceLogger{},
            FallbackStar(
                Inverter(FallbackStar(present("follow_wall_dir"), SetBlackboard{"follow_wall_dir", "true"})),
                ForceFailure(say_side_of_wall("2")), piece,
                SequenceStar(SetMapDrawMode{.draw_mode = "Default"}, SubtreeCondition{"Back2cm.xml"}))));
}

Node wall_pass(const WallPass& pass)
{
    return IfThenElse(
        GridmapLimitCheck{},
        Sequence(
            ForceSuccess(SubtreeCondition{"EscapeCoat"}),
            DoWhile(
                TraceLogger{},
                ForceSuccess(Sequence(
                    ConditionTimerSecs{.secs_out_key = "block_map_time", .start_from = "${block_map_time}"},
                    SequenceStar(default_from("origin_point", "current_coord"),
                                 CalcFollowWallFrameOut{.auto_mode_frames = "${automode_frames_consumption}",
                                                        .out_key = "follow_wall_frame_out"},
                                 outer_stage(pass), inner_stage(pass)))))),
        SubtreeCondition{"BackToMapLimit.xml"});
}

}  // namespace vemra::trees
