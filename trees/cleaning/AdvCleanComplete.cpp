#include "trees/idioms.h"

// Closes the task. The work is the supervisor's, which goes on with it even if this tree is halted; here the
// robot hands it over and waits for the end.
TREE(AdvCleanComplete)
{
    return SequenceStar(SaySomething{"AdvCleanComplete.xml wifi"}, erase("AdvCleanCompleteEnd"),
                        SetBlackboard{"AdvCleanCompleteStart", "true"},
                        RetryUntilSuccesful(-1, present("AdvCleanCompleteEnd")),
                        erase("AdvCleanCompleteEnd"));
}
