#include "trees/dock/search.h"

namespace {

Node add_weight(const char* weight)
{
    return key::signal_weight.plus(weight, key::signal_weight);
}

Node weigh(const char* receiver, const char* at_middle, const char* otherwise)
{
    return optionally(hears(receiver), IfThenElseStar(hears(receiver, "Middle"), add_weight(at_middle),
                                                      add_weight(otherwise)));
}

Node whole_turn(const char* angle_deg)
{
    return SequenceStar(SetMapDrawMode{.draw_mode = "None"}, key::signal_weight.erase(),
                        guarded_turn(angle_deg, 30));
}

}  // namespace

// One whole turn, to the side that hears more, and slow enough for each bearing to be marked.
TREE(GoChargingFullRoundTurn)
{
    return Named(
        "ParallelRotateAndMarkSignalDir",
        ParallelNode(1, DockSignalBitFilter{}, MarkDockSignal{},
                     IfThenElseStar(SequenceStar(key::signal_weight.set(0), weigh(left, "2", "1"),
                                                 weigh(ml, "3", "2"), weigh(mr, "-3", "-2"),
                                                 weigh(right, "-2", "-1"), key::signal_weight.above("-0.5")),
                                    whole_turn("360"), whole_turn("-360"))));
}
