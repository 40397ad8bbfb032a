#pragma once

#include <iosfwd>
#include <span>

#include "app/trees/tree_model.h"

namespace vemra::app {

/// Writes what differs between two sets of trees: trees that came and went, and of each changed one the lines
/// of its outline that came ("+") and went ("-"), with two lines around them, then a line that sums up. True
/// when something differs.
bool writeDifferences(std::ostream& out, std::span<const TreeModel> before, std::span<const TreeModel> after,
                      bool color);

}  // namespace vemra::app
