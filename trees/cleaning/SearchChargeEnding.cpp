#include "trees/idioms.h"

// Closes a mere search for the charger: there was no cleaning, so the log of it is made up.
TREE(SearchChargeEnding)
{
    return SequenceStar(
        SetBlackboard{"task_state", "init"}, erase("generate_points"), erase("SFC_trapped"),
        IfThenElseStar(switched_off(), SetBlackboard{"CleanCompleteWithoutCleaningLog", "true"},
                       SetBlackboard{"MockCleaningLog", "true"}),
        SetBlackboard{"MockCleaningLog", "true"}, SaySomething{"SearchChargeEnding.xml wifi 0"},
        SubtreeCondition{"AdvCleanComplete"});
}
