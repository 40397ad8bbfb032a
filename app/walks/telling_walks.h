#pragma once

#include <cstdint>
#include <vector>

#include "app/trees/tree_model.h"
#include "app/walks/walk.h"
#include "app/walks/walk_record.h"

namespace vemra::app {

/// Of the walks 0 to `count` - 1 of a tree those in which a node comes to a result, or is halted, as in fewer
/// than two before. Ends early once many in a row bring nothing new.
[[nodiscard]] std::vector<RecordedWalk> tellingWalks(Walker& walker, const TreeModel& tree,
                                                     std::uint64_t count);

}  // namespace vemra::app
