#include "trees/idioms.h"

// Closes the task. The work is the supervisor's, which goes on with it even if this tree is halted; here the
// robot hands it over and waits for the end.
TREE(AdvCleanComplete)
{
    return SequenceStar(SaySomething{"AdvCleanComplete.xml wifi"}, key::AdvCleanCompleteEnd.erase(),
                        key::AdvCleanCompleteStart.set("true"),
                        RetryUntilSuccesful(-1, key::AdvCleanCompleteEnd.present()),
                        key::AdvCleanCompleteEnd.erase());
}
