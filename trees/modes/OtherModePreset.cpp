#include "trees/modes/shared.h"

// Opens the modes that clean by hand, such as the remote control: no task of another mode stays open beside
// them, and the time spent in search of the charger is counted anew.
TREE(OtherModePreset)
{
    return SequenceStar(ForceSuccess(close_task()), key::search_charger_time.set(0));
}
