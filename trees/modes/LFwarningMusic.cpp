#include "trees/idioms.h"

// Warns by music of a shielded flow sensor, once for each time the warning comes up.
TREE(LFwarningMusic)
{
    return IfThenElse(
        DoesHappenThisWarning{"OLO_HEALTH_STATUS_TYPE_FLOW_SHIELDING"},
        IfThenElseStar(key::LFwarningMusicDisable.present(), key::LFwarningMusicDisable.set("true"),
                       SequenceStar(play(60), key::LFwarningMusicDisable.set("true"))),
        key::LFwarningMusicDisable.erase());
}
