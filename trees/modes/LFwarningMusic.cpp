#include "trees/idioms.h"

// Warns by music of a shielded flow sensor, once for each time the warning comes up.
TREE(LFwarningMusic)
{
    return IfThenElse(
        DoesHappenThisWarning{"OLO_HEALTH_STATUS_TYPE_FLOW_SHIELDING"},
        IfThenElseStar(present("LFwarningMusicDisable"), SetBlackboard{"LFwarningMusicDisable", "true"},
                       SequenceStar(music("60", "true"), SetBlackboard{"LFwarningMusicDisable", "true"})),
        erase("LFwarningMusicDisable"));
}
