#include "trees/coverage/shared.h"

namespace {

Node cleanup()
{
    return SubTree("Cleanup",
                   SequenceStar(erase(key::prefer_direction, key::first_contact_point, key::contact_point)));
}

// First to the last clear spot of the track, then to the map's origin.
Node drive_straight()
{
    return DoWhile(draw_locked("None"), SequenceStar(SubtreeCondition{"NaviOnePointProc.xml"},
                                                     FromFloatToPlainPoseMm{.coord_x_mm = "0",
                                                                            .coord_y_mm = "0",
                                                                            .out_key = "navi_target_point",
                                                                            .yaw_deg = "0"},
                                                     SubtreeCondition{"NaviOnePointProc.xml"}));
}

// A metre to the right, then two to the left.
Node choose_side()
{
    return IfThenElseStar(key::prefer_direction.is("Right"),
                          FallbackStar(points_within("1000", "${current_pose}", "${first_contact_point}"),
                                       SequenceStar(key::prefer_direction.set("Left"),
                                                    key::current_pose.copy_to(key::first_contact_point))),
                          points_within("2000", "${current_pose}", "${first_contact_point}"));
}

Node pass_obstacle()
{
    return optionally(key::first_contact_point.default_from(key::current_pose), choose_side(), NotTrapped{},
                      bumped(), SetFollowWallDirection{"${bump_dir}", "${prefer_direction}"},
                      key::current_pose.copy_to(key::contact_point),
                      Sequence(points_within("150", "${current_pose}", "${contact_point}"),
                               SubtreeCondition{"FollowWallProc.xml"}));
}

Node come_back()
{
    return SequenceStar(
        IfThenElseStar(key::robot_trajectory.present(),
                       FindLastInTrajectory{.out_point_grid = "navi_target_point", .search_for = "clear"},
                       key::navi_target_point.set("0;0")),
        key::prefer_direction.set("Right"), Repeat(-1, FallbackStar(drive_straight(), pass_obstacle())));
}

}  // namespace

// Leads a robot that has left the map back to it. The caller ends it as soon as the robot is there.
TREE(BackToMapLimit)
{
    return DoWhile(
        sensor_held_off("MapBorder"),
        IfThenElseStar(Frameout(9000, come_back()), ForceSuccess(cleanup()), ForceFailure(cleanup())));
}
