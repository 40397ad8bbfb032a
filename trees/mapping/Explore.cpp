#include "trees/mapping/explore.h"

namespace {

Node dock_was_hit()
{
    return FallbackStar(BumpdirMatch{"${bump_dir}", "left_dock"}, BumpdirMatch{"${bump_dir}", "middle_dock"},
                        BumpdirMatch{"${bump_dir}", "right_dock"}, ForceFailure(SubtreeCondition{"Back2cm"}));
}

// A short drive along the signal shows whether there is a dock.
Node chase_charger()
{
    return SequenceStar(
        SubtreeCondition{"GoChargingFullRoundTurn"},
        IfThenElseStar(
            FallbackStar(SignalTypeMatch{"${marker_signal_type}", "None"},
                         SignalTypeMatch{"${marker_signal_type}", "Mixed"}),
            AlwaysFailure{},
            SequenceStar(key::marker_dir.copy_to(key::turn_target_angle),
                         RetryUntilSuccesful(1, guarded(Rotate{.angle_deg = "${turn_target_angle}",
                                                               .angular_velocity_deg_s = "60",
                                                               .false_relative_true_absolute = "true"})))),
        ForceSuccess(Sequence(
            Inverter(SensorCheckBumped{"bump_dir"}),
            IfThenElse(ConsistentlyLostDockSignal{}, AlwaysFailure{},
                       Fallback(InDockField{}, ForceSuccess(Frameout(250, FollowDockSignal{"Middle"})))))),
        IfThenElseStar(Bumped{"${bump_dir}"}, dock_was_hit(), Inverter(ConsistentlyLostDockSignal{})));
}

Nodes charger_found()
{
    return row(key::explore_found_charger.flag(), end_stage());
}

Node look_for_charger()
{
    return IfThenElseStar(
        ExploreFindCharger{},
        IfThenElseStar(chase_charger(), SequenceStar(SaySomething{"tolvar find charger"}, charger_found()),
                       ForceFailure(SaySomething{"tolvar no charger"})),
        AlwaysFailure{});
}

Node look_around()
{
    return IfThenElseStar(TimeToTurn{}, FallbackStar(key::is_crossing_bridge.present(), guarded_round("360")),
                          AlwaysFailure{});
}

Node frontier_stage()
{
    const auto follow =
        row(NotTrapped{}, SubtreeCondition{"Escape"}, follow_walls_to_goal("TargetNoUnknown"));
    const auto drive = SequenceStar(
        drive_to_frontier(follow),
        IfThenElseStar(key::navi_target_point.present(), goal_within("100"), SequenceStar(end_stage())));
    return BB_Precondition(
        key::explore_break,
        RetryUntilSuccesful(
            -1, SequenceStar(SetMapDrawMode{.draw_mode = "BlockOnly"}, key::no_point_fs.set("false"),
                             until_no_point(Fallback(look_for_charger(), look_around(), drive)))));
}

// --- random points ------------------------------------------------------------------------------

Node generate_points()
{
    return FallbackStar(
        key::generate_points.present(),
        SequenceStar(IfThenElseStar(switched_off(), GenerateRandomPointPro{}, GenerateRandomPoint{}),
                     Delay{10}));
}

Node find_way()
{
    return search_map("Target", "${navi_target_point}");
}

Node drive_to_random_point()
{
    return RetryUntilSuccesful(
        3,
        FallbackStar(SequenceStar(key::explore_unreachable.set("false"), find_way(),
                                  SubtreeCondition{"NavigateExploreProc"}),
                     ForceFailure(FallbackStar(find_way(), SequenceStar(key::explore_unreachable.set("true"),
                                                                        key::no_point_fs.set("true")))),
                     SequenceStar(NotTrapped{}, SubtreeCondition{"Escape"}, follow_walls_to_goal("Target"))));
}

Node visit_random_points()
{
    const auto next = RetryUntilSuccesful(
        -1, IfThenElseStar(IfThenElseStar(switched_off(), SearchChargerPro{}, SearchCharger{}),
                           drive_to_random_point(), SequenceStar(end_stage())));
    return until_no_point(
        Fallback(IfThenElse(ExploreFindCharger{}, SequenceStar(charger_found()), AlwaysFailure{}),
                 SequenceStar(next, goal_within("100"), guarded_round("360"))));
}

// Where no way back to the start remains, the robot stops exploring.
Node random_stage()
{
    return BB_Precondition(
        key::explore_break,
        Loop(-1, SequenceStar(SetMapDrawMode{.draw_mode = "BlockOnly"}, key::no_point_fs.set("false"),
                              visit_random_points(), find_track_near_origin(),
                              IfThenElseStar(search_way_to_origin("0"), key::explore_not_enclave.set("true"),
                                             SequenceStar(end_stage())))));
}

}  // namespace

// Looks for a dock where the map ends, and then at random points. Always fails, at once where a dock was
// found; `explore_found_charger` tells.
TREE(Explore)
{
    return fail_after(key::explore_break.set("false"), key::nav_explore.set("true"),
                      key::explore_found_charger.erase(), frontier_stage(), Stop{}, Delay{10},

                      generate_points(), key::explore_break.set("false"), key::nav_explore.set("false"),
                      key::explore_not_enclave.set("false"), ForceSuccess(random_stage()),

                      key::generate_points.erase(), Delay{10});
}
