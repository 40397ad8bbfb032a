#include "trees/dock/docking_lds.h"

namespace vemra::trees {

namespace {

Node choose_sector_tree()
{
    return choose(
        {{BoolMatch{"false", "true"}, sector_lds_7003()}, {BoolMatch{"true", "true"}, sector_lds_7002()}},
        sector_lds_first());
}

// --- the final approach -------------------------------------------------------------------------

Node follow_middle_line()
{
    return Sequence(no_bump(), IfThenElseStar(Frameout(3000, FollowDockSignalFinal{}), AlwaysSuccess{},
                                              ForceFailure(key::final_dock_failure.flag())));
}

// A mark of the retry below is taken off in passing.
Node bumped_or_out_of_time()
{
    return FallbackStar(Bumped{"${bump_dir}"}, SequenceStar(key::final_dock_failure.take()),
                        ForceFailure(SequenceStar(key::dock_not_back.take())));
}

// The count is set back with each approach, so that the limit of back-outs is what ends the cycle.
Node back_out()
{
    return SequenceStar(when(key::final_dock_times.above(3), break_docking()),
                        ForceSuccess(smart_back_40cm(IfThenElseStar(
                            switched_on(), back_off_dock("400", "800"), back_off_dock("150", "200")))),
                        key::final_dock_times.plus(1));
}

// Straight back onto the line, if it is heard.
Node look_for_middle()
{
    return ForceFailure(
        FallbackStar(IfThenElseStar(Fallback(hears(ml, "Middle"), hears(mr, "Middle"),
                                             ForceFailure(Rotate{.angle_deg = "360",
                                                                 .angular_velocity_deg_s = "60",
                                                                 .false_relative_true_absolute = "false"})),
                                    key::dock_not_back.flag(), walk_and_break_docking())));
}

Node final_approach()
{
    return RetryUntilSuccesful(
        -1,
        FallbackStar(
            Inverter(Sequence(
                InMiddleDockOnceInAWhile{},
                Inverter(docking({.scanner_off = true, .cliff_off = true, .follow = follow_middle_line()})))),
            IfThenElseStar(bumped_or_out_of_time(), back_out(), look_for_middle())));
}

}  // namespace

Node back_off_dock(const char* distance_mm, const char* frames)
{
    return ForceSuccess(
        Frameout(frames, Sequence(within(distance_mm, "${back_origin_point}"), GoBackwards{})));
}

Node docking_loop_lds()
{
    return SequenceStar(
        docking_loop(row(choose_sector_tree(), key::final_dock_times.set(0), final_approach())));
}

}  // namespace vemra::trees
