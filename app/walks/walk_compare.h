#pragma once

#include <iosfwd>
#include <vector>

#include "app/walks/walk.h"

namespace vemra::app {

/// Writes where the deeds of two walks part: the last things that happened in both, then what happens in the
/// one
/// ("-") and in the other ("+"), some lines of each.
void writeFirstDifference(std::ostream& out, const std::vector<WalkEvent>& before,
                          const std::vector<WalkEvent>& after, bool color);

}  // namespace vemra::app
