#include "trees/idioms.h"

// Factory mode: the robot stands still and takes the commands of the factory.
TREE(FactoryModeIndex)
{
    return SequenceStar(Stop{}, SlamPause{},
                        SetCleanSystem{.Brush = "1", .Fan = "0", .Pump = "0", .SideBrush = "0"},
                        FactoryModeDeal{}, StopModeDeal{});
}
