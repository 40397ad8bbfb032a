#include "trees/idioms.h"
#include "trees/navigation/goal.h"

namespace {

// The pause lets the guard above the passes see the flag and halt them.
Node end_passes(const char* message)
{
    return SequenceStar(SaySomething{message}, key::ton_flag.set("true"), Delay{1});
}

Node count_pass()
{
    return IfThenElseStar(key::MTW_times.above(10), end_passes("tolvar try over 10 times"),
                          key::MTW_times.plus(1));
}

Node find_path()
{
    return FallbackStar(AwesomeSearch{.output_point = "navi_target_point",
                                      .region = "${gridmap_limit}",
                                      .search_mode = "Target",
                                      .source_point = "${current_coord}",
                                      .target = "${navi_target_point}"},
                        end_passes("tolvar no more"));
}

// A bump on the way is followed along its wall for a stretch, which may open a path for the next pass.
Node drive_or_follow_wall()
{
    return ForceSuccess(
        FallbackStar(SubtreeCondition{"NavigateProc"},
                     ForceFailure(SequenceStar(NotTrapped{}, Bumped{.bump_dir = "${bump_dir}"},
                                               SetMapDrawMode{.draw_mode = "BlockOnly"},
                                               AdvancedSetFollowWallDirection{}, SetFollowWallRectLimit{},
                                               SubtreeCondition{"FollowWallTillRectLimitIgnoreCharger"}))));
}

// Up to eleven passes, all of them within the square around the bump.
Node passes()
{
    return ForceSuccess(Sequence(
        IfThenElse(IsPointInRectangle{.point = "${current_pose}", .rectangle = "${navigate_limit}"},
                   AlwaysSuccess{}, ForceFailure(SaySomething{"tolvar out rect"})),
        BB_Precondition(
            key::ton_flag,
            RetryUntilSuccesful(
                -1, SequenceStar(
                        count_pass(), SaySomething{"tolvar navi once"}, find_path(), drive_or_follow_wall(),
                        IfThenElseStar(goal_within("200"), end_passes("tolvar reach"), AlwaysFailure{}))))));
}

}  // namespace

// Tries to get behind the wall that the robot has bumped into, since the charger may be heard on the other
// side. The side on which walls are followed is the caller's and is given back at the end.
TREE(ThroughObstacleNavigation)
{
    return SequenceStar(
        SaySomething{"tolvar enter"},
        MoveThroughWalls{.out_point = "navi_target_point", .pose = "${initial_bump_pose}"},
        SaySomething{"tolvar mtw"},

        // The search keeps to four metres square around the bump.
        GeneratePointCenteredRectMm{
            .center = "${initial_bump_pose}", .half_size_mm = "2000", .out_rect = "navigate_limit"},
        SaySomething{"tolvar GeneratePCR"}, MakeMap{.roi = "${navigate_limit}"},

        IfThenElseStar(key::follow_wall_dir.present(), key::follow_wall_dir.copy_to(key::follow_wall_dir_bak),
                       key::follow_wall_dir_bak.erase()),
        key::ton_flag.set("false"), key::MTW_times.set(0),

        passes(),

        Stop{}, SaySomething{"tolvar break"}, key::MTW_times.erase(),
        optionally(key::follow_wall_dir_bak.present(),
                   key::follow_wall_dir_bak.copy_to(key::follow_wall_dir)),
        goal_within("200"));
}
