#include "trees/escape/shared.h"

namespace {

struct Rung
{
    Node warning;
    Node way_out;
};

// The ladder of escapes: the first warning that holds decides, and only its way out is gone. What needs the
// quickest answer stands highest. A robot that is held by none of these may still be pinned by something that
// only the laser sees.
Node climb_the_ladder()
{
    std::vector<Rung> ladder = {
        {IsCliffWarning{}, EscapeCliffDeal{}},
        {IsDropWarning{}, EscapeDropDeal{}},
        {IsVirtualWarning{}, EscapeVirtualDeal{}},
        {IsBumpWarning{}, EscapeBumpDeal{}},
        {is_immovable_warning{}, immovable_motion{}},
        {IsLeftWheelCurrentWarning{}, EscapeLeftWheelCurrentDeal{}},
        {IsRightWheelCurrentWarning{}, EscapeRightWheelCurrentDeal{}},
        {IsBrushCurrentWarning{}, EscapeBrushCurrentDeal{}},
        {IsSideCurrentWarning{}, EscapeSideCurrentDeal{}},
        {IsGestureWarning{}, EscapeGestureDeal{}},
        {IsBumpRepeatWarning{}, EscapeBumpRepeatDeal{}},
        {IsDropRepeatWarning{}, EscapeDropRepeatDeal{}},
        {IsTurnSuffocateWarning{}, EscapeTurnSuffocateDeal{}},
        {IsForwardSuffocateWarning{}, EscapeForwardSuffocateDeal{}},
    };
    Node climb = SubtreeCondition{"EscapeLDSBump.xml"};
    for (auto rung = ladder.rbegin(); rung != ladder.rend(); ++rung)
        climb = IfThenElseStar(rung->warning, rung->way_out, climb);
    return climb;
}

// One escape from its beginning to its end. Only a way out that worked leaves the flag by which the
// interrupted motion learns of it; after a failed one the warning stands and brings the robot back here.
Node escape_process()
{
    return SubTree(
        "EscapeProcess",
        DoWhile(
            TraceLogger{"true"},
            SequenceStar(SaySomething{"开始脱困..."}, EscapeInitDeal{},
                         Sequence(SubtreeCondition{"AlwaysSuccess.xml"},
                                  DoWhile(PSD_interpolation{}, get_local_map{}, Makemap{"${gridmap_limit}"},
                                          off_the_trace("Escape"), climb_the_ladder())),
                         EscapeEndDeal{}, key::finish_escape.set("true"),
                         key::current_tick_cnt.copy_to(key::origin_tick_cnt), SaySomething{"结束脱困..."})));
}

// A motion has two ticks to take notice of an escape. A flag older than that belongs to a motion that does
// not ask for it, and would stop some later one for nothing.
Node drop_stale_flag()
{
    return SequenceStar(
        key::finish_escape.present(),
        IfThenElseStar(
            key::origin_tick_cnt.present(),
            SequenceStar(SaySomething{"脱困异常情况：某个动作发生时触发脱困，但该处动作未调用Escape.xml"},
                         IsAGreaterThanBInt{.A = "${current_tick_cnt} - ${origin_tick_cnt}", .B = 2},
                         erase(key::finish_escape, key::origin_tick_cnt)),
            SequenceStar(SaySomething{"异常脱困情况：有finish_escape, 但没有origin_tick_cnt"},
                         key::finish_escape.erase())));
}

// A bridge that traps the robot time and again is not worth crossing: at the fifth count (the message says
// more than five) the crossing is told to give up instead. Away from bridges there is no such limit.
Node escape_unless_bridge_is_hopeless()
{
    return IfThenElseStar(
        key::cross_bridge_trap_times.present(),
        IfThenElseStar(key::cross_bridge_trap_times.below(5), escape_process(),
                       SequenceStar(SaySomething{"cross_bridge_trap_times > 5, 不再执行脱困动作"},
                                    key::traped_when_crossing.flag())),
        escape_process());
}

}  // namespace

// The guard of a task, in front of its body: a warning halts the body in mid-motion and the robot frees
// itself on the spot. Success is a tick without a warning, or an escape that did not work out.
TREE(EscapeCoat)
{
    return Inverter(SequenceStar(key::trapped.set("false"), PSD_interpolation{}, get_local_map{},
                                 FallbackStar(IsEscapeCheckWarning{}, ForceFailure(drop_stale_flag())),
                                 SaySomething{"进入脱困动作（EscapeCoat）..."}, key::trapped.set("true"),
                                 account_action("Escape"), escape_unless_bridge_is_hopeless()));
}
