#include "trees/idioms.h"

// The robot hears the dock in a way that a search can start from. A side receiver counts only for the signal
// of its own side.
TREE(ReadyToSearchForCharger)
{
    return Fallback(ChargerReceiverPickedUpSignal{"MiddleLeft", "Any"},
                    ChargerReceiverPickedUpSignal{"MiddleRight", "Any"},
                    ChargerReceiverPickedUpSignal{"Left", "Left"},
                    ChargerReceiverPickedUpSignal{"Right", "Right"});
}
