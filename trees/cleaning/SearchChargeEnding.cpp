#include "trees/idioms.h"

// Closes a mere search for the charger: there was no cleaning, so the log of it is made up.
TREE(SearchChargeEnding)
{
    return SequenceStar(key::task_state.set("init"), erase(key::generate_points, key::SFC_trapped),
                        IfThenElseStar(switched_off(), key::CleanCompleteWithoutCleaningLog.set("true"),
                                       key::MockCleaningLog.set("true")),
                        key::MockCleaningLog.set("true"), SaySomething{"SearchChargeEnding.xml wifi 0"},
                        SubtreeCondition{"AdvCleanComplete"});
}
